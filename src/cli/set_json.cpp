#include "cli/set_json.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/number_text.h"
#include "base/saturate.h"
#include "cli/set_fields.h"
#include "params/settings_file.h"

namespace tessavo::cli {

namespace {

using Json = nlohmann::ordered_json;

Json valueOf(const ParameterSet& set, const Field& field, FieldIndex index) {
    const double stored = storedValue(set, field, index);
    const std::string text = elementText(set, field, index);
    if (!std::isfinite(stored)) {
        return text;
    }
    if (field.type != FieldType::f32 && field.storedPerShown == 1) {
        return truncateTo<std::int64_t>(stored);
    }
    // The shortest text of a single, read as a double, prints as that text again.
    return finiteNumber(text).value_or(0);
}

// The node that a path such as "channel[].band[].gain" names, made on the way down.
Json& nodeAt(Json& root, const Field& field, FieldIndex index) {
    Json* node = &root;
    std::string_view rest = field.path;
    std::size_t dimension = 0;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('.'), rest.size());
        std::string_view name = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const bool repeated = name.ends_with("[]");
        if (repeated) {
            name.remove_suffix(2);
        }
        node = &(*node)[std::string(name)];
        if (repeated) {
            node = &(*node)[dimension++ == 0 ? index.outer : index.inner];
        }
    }
    return *node;
}

Json setJson(const ParameterSet& set, std::size_t setIndex) {
    Json out;
    out["set"] = setIndex + 1;
    out["valid"] = isValidRecord(set);
    if (!isValidRecord(set)) {
        return out;
    }
    Json& fields = out["fields"] = Json::object();
    for (const Field& field : fieldTable()) {
        forEachElement(field,
                       [&](FieldIndex index) { nodeAt(fields, field, index) = valueOf(set, field, index); });
    }
    const RecordBytes bytes = bytesOf(set);
    Json& texts = out["texts"] = Json::object();
    for (const TextField& field : textFields()) {
        texts[std::string(field.path)] = {
            {"text", utf8FromUtf16(readSetText(set.*field.text))},
            {"bytes", hexText(std::span(bytes).subspan(field.recordOffset, sizeof(SetText)))}};
    }
    Json& spare = out["spare"] = Json::object();
    for (const SpareRun& run : spareRuns()) {
        spare[std::to_string(run.offset)] = hexText(std::span(bytes).subspan(run.offset, run.size));
    }
    return out;
}

}  // namespace

std::string settingsJson(const ParameterStore& store, const ShownSets& shown) {
    Json sets = Json::array();
    for (std::size_t set = 0; set < setCount; ++set) {
        if (!shown.only || shown.index == set) {
            sets.push_back(setJson(store.sets[set], set));
        }
    }
    Json out;
    out["sets"] = std::move(sets);
    return out.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tessavo::cli
