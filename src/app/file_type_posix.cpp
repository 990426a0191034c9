#include "app/file_type.h"

namespace tessavo {

// The desktop reads the type and the program that opens it from the installed files.
void registerFileType() {}

}  // namespace tessavo
