#include "cli/set_diff.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "cli/set_fields.h"
#include "compare/real_difference.h"

namespace tessavo::cli {

namespace {

struct LocatedDifference {
    std::size_t offset;
    Difference difference;
};

std::string hexAt(const RecordBytes& bytes, std::size_t offset, std::size_t size) {
    return hexText(std::span(bytes).subspan(offset, size));
}

class SetComparison {
 public:
    SetComparison(std::size_t setIndex, const ParameterSet& first, const ParameterSet& second,
                  Counted counted)
        : prefix_("set " + std::to_string(setIndex + 1) + " "),
          first_(first),
          second_(second),
          firstBytes_(bytesOf(first)),
          secondBytes_(bytesOf(second)) {
        if (counted == Counted::real) {
            real_.emplace(first, second);
        }
    }

    std::vector<LocatedDifference> run() {
        for (const Field& field : fieldTable()) {
            forEachElement(field, [&](FieldIndex index) { compareElement(field, index); });
        }
        for (const TextField& field : textFields()) {
            compareText(field);
        }
        for (const SpareRun& run : spareRuns()) {
            for (std::size_t i = 0; i < run.size; ++i) {
                compareSpare(run.offset + i);
            }
        }
        std::stable_sort(
            found_.begin(), found_.end(),
            [](const LocatedDifference& a, const LocatedDifference& b) { return a.offset < b.offset; });
        return std::move(found_);
    }

 private:
    [[nodiscard]] bool sameBytes(std::size_t offset, std::size_t size) const {
        return std::memcmp(firstBytes_.data() + offset, secondBytes_.data() + offset, size) == 0;
    }

    void add(std::size_t offset, const std::string& path, std::string first, std::string second) {
        found_.push_back({offset, {prefix_ + path, std::move(first), std::move(second)}});
    }

    void compareElement(const Field& field, FieldIndex index) {
        const std::size_t offset = recordOffsetOf(field, index);
        if (sameBytes(offset, widthOf(field.type)) || (real_ && !real_->isReal(field, index))) {
            return;
        }
        const std::string unit = field.unit.empty() ? "" : " " + std::string(field.unit);
        add(offset, elementPath(field, index), elementText(first_, field, index) + unit,
            elementText(second_, field, index) + unit);
    }

    void compareText(const TextField& field) {
        if (sameBytes(field.recordOffset, sizeof(SetText))) {
            return;
        }
        const std::string path(field.path);
        const std::string first = readableText(first_, field);
        const std::string second = readableText(second_, field);
        if (first != second) {
            add(field.recordOffset, path, "\"" + first + "\"", "\"" + second + "\"");
        } else {
            add(field.recordOffset, path, hexAt(firstBytes_, field.recordOffset, sizeof(SetText)),
                hexAt(secondBytes_, field.recordOffset, sizeof(SetText)));
        }
    }

    void compareSpare(std::size_t offset) {
        if (!sameBytes(offset, 1)) {
            add(offset, "spare[" + std::to_string(offset) + "]", "0x" + hexAt(firstBytes_, offset, 1),
                "0x" + hexAt(secondBytes_, offset, 1));
        }
    }

    std::string prefix_;
    const ParameterSet& first_;
    const ParameterSet& second_;
    RecordBytes firstBytes_;
    RecordBytes secondBytes_;
    std::optional<RealDifferences> real_;  ///< empty where every difference counts
    std::vector<LocatedDifference> found_;
};

}  // namespace

std::vector<Difference> differences(const ParameterStore& first, const ParameterStore& second,
                                    Counted counted) {
    std::vector<Difference> all;
    for (std::size_t set = 0; set < setCount; ++set) {
        for (LocatedDifference& located :
             SetComparison(set, first.sets[set], second.sets[set], counted).run()) {
            all.push_back(std::move(located.difference));
        }
    }
    return all;
}

}  // namespace tessavo::cli
