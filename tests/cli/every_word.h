#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/edit_script.h"

namespace tessavo::test {

/// What the table of words has and a script leaves out: words without a line, and fields that no line of their
/// word writes.
inline std::vector<std::string> leftOutOf(std::string_view text) {
    const auto parsed = cli::parseScript(text);
    if (const auto* error = std::get_if<cli::ScriptError>(&parsed)) {
        return {"line " + std::to_string(error->line) + ": " + error->message};
    }
    const auto& script = std::get<cli::Script>(parsed);
    std::vector<std::string> missing;
    for (const cli::ScriptWord& word : cli::scriptWords()) {
        const auto isWritten = [&](const auto& writes) {
            return std::ranges::any_of(script, [&](const cli::ScriptLine& line) {
                return line.word == &word && writes(line.values);
            });
        };
        if (!isWritten([](const auto& /*values*/) { return true; })) {
            missing.emplace_back(word.name());
        }
        for (const cli::WordField& each : word.fields) {
            if (!isWritten([&](const std::vector<FieldValue>& values) {
                    return std::ranges::find(values, each.field, &FieldValue::field) != values.end();
                })) {
                missing.push_back(word.usage + ": " + std::string(fieldOf(each.field).path));
            }
        }
    }
    return missing;
}

}  // namespace tessavo::test
