#include <cstdint>
#include <span>
#include <string>
#include <variant>

#include "check.h"
#include "history/notes_file.h"

// Any bytes as a file of notes.

using namespace tessavo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto found = notesFrom({data, size});
    const auto* notes = std::get_if<FileNotes>(&found);
    if (notes == nullptr) {
        fuzz::check(std::get<NotesTrouble>(found) != NotesTrouble::missing, "they are there");
        return 0;
    }
    fuzz::check(wellFormed(*notes) == *notes, "what was read is well formed");
    const std::string text = notesJson(*notes);
    const auto again = notesFrom({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    fuzz::check(std::holds_alternative<FileNotes>(again) && std::get<FileNotes>(again) == *notes,
                "what was read can be written and read again");
    return 0;
}
