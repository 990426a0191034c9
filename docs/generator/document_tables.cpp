#include "document_tables.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "cli/command_table.h"
#include "comm/framing.h"
#include "comm/target_commands.h"
#include "comm/transfer_timing.h"
#include "control_tables.h"
#include "house/rooms.h"
#include "markdown.h"
#include "params/field_table.h"
#include "params/surround_delays.h"
#include "params/volume_gain_table.h"

namespace tessavo {

namespace {

std::string hex(std::uint32_t value) {
    return "0x" + hexNumber(value, 2);
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return lower;
}

std::string typeName(FieldType type) {
    switch (type) {
        case FieldType::u8:
            return "u8";
        case FieldType::i8:
            return "i8";
        case FieldType::u16:
            return "u16";
        case FieldType::i16:
            return "i16";
        case FieldType::u32:
            return "u32";
        case FieldType::i32:
            return "i32";
        case FieldType::f32:
            break;
    }
    return "f32";
}

std::string ruleText(ImageRule rule) {
    switch (rule) {
        case ImageRule::none:
            break;
        case ImageRule::copy:
            return "copied; back: low bytes";
        case ImageRule::wholeNumber:
            return "truncated to a whole number; back: as a single";
        case ImageRule::inverse:
            return "1 for 0 and 0 for anything else, both ways; written by the switch alone";
        case ImageRule::gainWord:
            return "gain word of volume + group gain; back: level of the word";
        case ImageRule::groupGain:
            return "tenths, truncated, and part of the gain word; back: the tenths";
        case ImageRule::delaySamples:
            return "samples of delay + group delay at 49.5 per ms; back: (samples - 0.5) / 48 ms";
        case ImageRule::groupDelay:
            return "tenths, truncated, and part of the samples; back: the tenths";
        case ImageRule::flag:
            return "copied; back: 1 for anything but 0";
        case ImageRule::neverCleared:
            return "copied; back: set to 1 for anything but 0, never cleared";
        case ImageRule::allSets:
            return "copied; back: into all five sets";
        case ImageRule::fromImageOnly:
            return "not written; back: copied";
    }
    return "not in the image";
}

std::string location(std::size_t offset, const Field& field, bool image) {
    std::string text = std::to_string(offset);
    const auto stride = [&](const Repeat& repeat, const char* index) {
        const std::uint16_t step = image ? repeat.imageStride : repeat.recordStride;
        if (repeat.count > 1 && step != 0) {
            text += " + " + std::to_string(step) + "·" + index;
        }
    };
    stride(field.outer, "i");
    stride(field.inner, "j");
    return text;
}

std::string countText(const Field& field) {
    if (field.inner.count > 1) {
        return std::to_string(field.outer.count) + " × " + std::to_string(field.inner.count);
    }
    return field.outer.count > 1 ? std::to_string(field.outer.count) : "";
}

std::string defaultText(const Field& field) {
    if (field.id == FieldId::recordSize) {
        return std::to_string(parameterSetSize);
    }
    std::string text;
    for (const double value : field.defaults) {
        text += (text.empty() ? "" : ", ") + shortestText(value);
    }
    return text.empty() ? "0 (not written)" : text;
}

std::string recordTable() {
    std::vector<Row> rows;
    for (const Field& field : fieldTable()) {
        rows.push_back(
            {location(field.recordOffset, field, false), typeName(field.type), countText(field),
             inBackticks(field.path), std::string(field.meaning),
             shortestText(field.minimum) + " … " + shortestText(field.maximum),
             std::string(field.unit) +
                 (field.storedPerShown != 1 ? " (stored × " + shortestText(field.storedPerShown) + ")" : ""),
             defaultText(field)});
    }
    const auto text = [&](std::size_t offset, const char* name, const char* meaning, const char* value) {
        rows.push_back(
            {std::to_string(offset), "UTF-16", std::to_string(textUnits), name, meaning, "", "", value});
    };
    text(offsetof(ParameterSet, setName), "`setName`", "name of the set, zero-filled", "Type 1 … Type 5");
    text(offsetof(ParameterSet, setVersion), "`setVersion`", "version text, zero-filled", "1.0");
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return std::stoi(a[0]) < std::stoi(b[0]); });
    return table({"Offset", "Type", "Count", "Name", "Meaning", "Range", "Unit", "Default"}, rows);
}

std::string imageTable() {
    std::vector<Row> rows;
    for (const Field& field : fieldTable()) {
        if (field.imageOffset < 0) {
            continue;
        }
        std::string where = location(static_cast<std::size_t>(field.imageOffset), field, true);
        if (field.secondImageOffset >= 0) {
            where += " and " + location(static_cast<std::size_t>(field.secondImageOffset), field, true);
        }
        rows.push_back({where, typeName(field.imageType), inBackticks(field.path),
                        location(field.recordOffset, field, false), ruleText(field.rule)});
    }
    const auto words = [&](std::size_t offset, const char* name, const char* what) {
        rows.push_back({std::to_string(offsetof(ParameterImage, channels) + offset) + " + 360·i + 20·j",
                        "i32 × 5", name, "", what});
    };
    words(offsetof(ChannelImageBlock, crossoverWords), "crossover words", "coefficients; never read back");
    words(offsetof(ChannelImageBlock, bandWords), "band words", "coefficients; never read back");
    rows.push_back({"0", "u32", "`imageSize`", "", std::to_string(parameterImageSize)});
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return std::stoi(a[0]) < std::stoi(b[0]); });
    return table({"Offset", "Type", "Name", "Record offset", "Relation"}, rows);
}

std::string gainTable() {
    std::vector<Row> rows;
    const auto& gains = volumeGainTable();
    for (const std::size_t j : {0U, 44U, 48U, 84U, 96U, 301U, 302U}) {
        rows.push_back({std::to_string(j), shortestText(gains[j].levelDb), hex(gains[j].gainWord)});
    }
    return table({"Entry", "Level in dB", "Word"}, rows);
}

std::string frameTable() {
    std::vector<Row> rows;
    for (unsigned type = 1; type <= 5; ++type) {
        const std::size_t size = payloadSize(static_cast<std::uint8_t>(type));
        rows.push_back({std::to_string(type), std::to_string(size), std::to_string(size + frameOverhead)});
    }
    return table({"Type byte", "Payload bytes", "Frame bytes"}, rows);
}

std::string controlTable() {
    return table({"Byte", "Name", "Sent by", "Meaning"},
                 {{hex(control_byte::request), "request", "target",
                   "ready to take a frame; once after the port is opened"},
                  {hex(control_byte::positive), "positive answer", "target", "frame or disconnect taken"},
                  {hex(control_byte::negative), "negative answer", "target", "frame refused"},
                  {hex(control_byte::disconnect), "disconnect", "PC", "end of the exchange"},
                  {hex(control_byte::padding), "padding", "PC", "fills a block beyond the message's end"}});
}

std::string commandTable() {
    std::vector<Row> rows;
    for (const TargetMessage& message : targetMessages()) {
        rows.push_back({message.code ? std::to_string(*message.code) : "none", std::string(message.name),
                        "type " + std::to_string(message.frameType), message.payload,
                        message.reply.empty() ? "none" : message.reply});
    }
    return table({"Code", "Command", "Frame", "Payload", "Reply payload"}, rows);
}

std::string programCommandTable() {
    std::vector<Row> rows;
    for (const cli::CommandRow& row : cli::commandTable()) {
        const std::string example = "tessavoctl " + row.example;
        rows.push_back({inBackticks(std::string_view(example)), row.purpose});
    }
    return table({"For example", "What the command does"}, rows);
}

std::string timingTable() {
    const auto ms = [](Milliseconds value) { return std::to_string(value.count()); };
    return table({"What", "ms"},
                 {{"wait for the transfer lock", ms(timing::lockWait)},
                  {"wait for the request byte", ms(timing::requestWait)},
                  {"quiet line that ends the flushing of old input", ms(timing::flushWait)},
                  {"limit for writing a frame or the disconnect byte", ms(timing::writeWait)},
                  {"pause after a block (sending only)", ms(timing::pauseAfterBlock)},
                  {"wait for an answer", ms(timing::answerWait)},
                  {"pause after an answer (sending only)", ms(timing::pauseAfterAnswer)},
                  {"wait for a reply frame", ms(timing::replyWait)},
                  {"period of the live worker", ms(timing::workerPeriod)},
                  {"pause between live image and confirmation", ms(timing::pauseBeforeConfirmation)}});
}

std::string surroundDelayTable() {
    Row head{"Surround mode"};
    for (std::size_t room = 0; room < roomSizeCount; ++room) {
        head.push_back("Room size " + std::to_string(room));
    }
    std::vector<Row> rows;
    for (const FieldCode& mode : fieldOf(FieldId::surroundMode).codes) {
        Row row{std::to_string(mode.code) + " " + lowerCase(mode.shown)};
        for (const std::uint16_t delayMs : startingSurroundDelays.at(mode.code)) {
            row.push_back(std::to_string(delayMs));
        }
        rows.push_back(std::move(row));
    }
    return table(head, rows);
}

std::string roomTable() {
    std::vector<Row> rows;
    const auto rooms = house::houseRooms();
    for (auto room = rooms.rbegin(); room != rooms.rend(); ++room) {
        const std::string folder = "src/" + std::string(room->folder);
        rows.push_back({inBackticks(std::string_view(folder)), std::to_string(room->floor),
                        std::string(room->knowsTheToolkit ? "window" : "core"), std::string(room->holds)});
    }
    return table({"Room", "Floor", "Part", "Holds"}, rows);
}

}  // namespace

std::map<std::string, std::string> documentTables() {
    std::map<std::string, std::string> tables = manualTables();
    tables.insert({{"record", recordTable()},
                   {"image", imageTable()},
                   {"gain", gainTable()},
                   {"frames", frameTable()},
                   {"control", controlTable()},
                   {"commands", commandTable()},
                   {"commands of tessavoctl", programCommandTable()},
                   {"timing", timingTable()},
                   {"surround delays", surroundDelayTable()},
                   {"rooms", roomTable()}});
    return tables;
}

std::string fillTables(const std::string& document, const std::map<std::string, std::string>& tables,
                       std::string& problem) {
    const std::string opening = "<!-- table: ";
    const std::string openingEnd = " -->\n";
    const std::string closing = "<!-- end -->";
    std::string out;
    std::size_t position = 0;
    while (true) {
        const std::size_t start = document.find(opening, position);
        if (start == std::string::npos) {
            return out + document.substr(position);
        }
        const std::size_t nameStart = start + opening.size();
        const std::size_t nameEnd = document.find(openingEnd, nameStart);
        const std::size_t end = document.find(closing, nameStart);
        const std::string name =
            nameEnd == std::string::npos ? "" : document.substr(nameStart, nameEnd - nameStart);
        const auto entry = tables.find(name);
        if (entry == tables.end() || end == std::string::npos) {
            problem = "no table '" + name + "', or its end is missing";
            return document;
        }
        out += document.substr(position, nameEnd + openingEnd.size() - position) + entry->second;
        position = end;
    }
}

}  // namespace tessavo
