#include "base/file_dialogs.h"

#include <clocale>

namespace tessavo {

void resetLocaleAfterDialog() {
    // No thread but this one reads the locale: everything else formats without it.
    static_cast<void>(std::setlocale(LC_ALL, "English"));  // NOLINT(concurrency-mt-unsafe)
}

}  // namespace tessavo
