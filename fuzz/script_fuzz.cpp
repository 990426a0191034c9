#include <cmath>
#include <cstdint>
#include <string_view>
#include <variant>

#include "check.h"
#include "cli/edit_script.h"
#include "params/field_table.h"
#include "params/tuning_state.h"

// Any text as an edit script; what is accepted is run and must leave every value in its control's range.

namespace {

using namespace tessavo;

void checkRange(const ParameterSet& set, const Field& field) {
    forEachElement(field, [&](FieldIndex index) {
        const double shown = shownValue(set, field, index);
        // A single that stands for an end of the range may lie a little outside of it.
        const double slack = 1e-5 * (1.0 + std::abs(shown));
        fuzz::check(shown >= field.minimum - slack && shown <= field.maximum + slack,
                    "a script leaves every value in its range");
    });
}

/// The fields that scripts write, in every set.
void checkRanges(const ParameterStore& store) {
    for (const ParameterSet& set : store.sets) {
        for (const cli::ScriptWord& word : cli::scriptWords()) {
            for (const cli::WordField& each : word.fields) {
                checkRange(set, fieldOf(each.field));
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto parsed = cli::parseScript(text);
    if (const auto* error = std::get_if<cli::ScriptError>(&parsed)) {
        fuzz::check(error->line >= 1 && error->line <= size + 1 && !error->message.empty(),
                    "an error names a line of the script and what is wrong");
        return 0;
    }
    const auto& script = std::get<cli::Script>(parsed);
    for (const std::size_t set : cli::setsUsed(script)) {
        fuzz::check(set < setCount, "a script uses sets that exist");
    }
    fuzz::SilentBoxes boxes;
    TuningState tuning(boxes);
    tuning.start();
    cli::applyScript(tuning, script);
    checkRanges(tuning.store());
    return 0;
}
