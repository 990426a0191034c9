#pragma once

#include <string>

#include "params/file_notes.h"

namespace tessavo {

/// What differs between the notes before a step and after it, in words: "Channel 7 named Mid L", "Channel 7
/// without a name", "3 channels named", "Note changed". At most 60 characters; empty where nothing does.
[[nodiscard]] std::string describeNotesChange(const FileNotes& before, const FileNotes& after);

}  // namespace tessavo
