#pragma once

#include <QByteArray>
#include <filesystem>

#include "support/temporary_folder.h"

namespace tessavo::test {

/// The folder of a program that is made in this process, without a screen: nothing that is the user's own is
/// read or written. The environment keeps its name.
class ProgramFolder : public TemporaryFolder {
 public:
    ProgramFolder() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // The toolkit wants this folder closed to others.
        std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(path().string()));
    }
};

}  // namespace tessavo::test
