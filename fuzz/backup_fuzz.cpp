#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "check.h"
#include "copies/backup_note.h"

// Any bytes as the text that tells what is in a backup.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessavo;
    const auto read = readBackupText({reinterpret_cast<const char*>(data), size});
    fuzz::check(read.note.has_value() == read.trouble.empty(), "a text gives a note or a reason");
    if (!read.note) {
        return 0;
    }
    const std::string text = backupText(*read.note);
    const auto again = readBackupText(text);
    fuzz::check(again.note.has_value(), "what was read can be written and read again");
    fuzz::check(backupText(*again.note) == text, "and is the same then");
    return 0;
}
