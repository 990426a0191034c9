#include "history/step_text.h"

namespace tessavo {

std::string describeStep(const TuningSnapshot&, const TuningSnapshot&) {
    return "Edit";
}

}  // namespace tessavo
