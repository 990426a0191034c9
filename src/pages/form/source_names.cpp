#include "pages/form/source_names.h"

#include <array>

#include "params/field_table.h"

namespace tessavo {

namespace {

// In the order of the codes.
constexpr std::array<const char*, 14> shortNames{"–",   "FL",  "FR", "C",  "RL",  "RR",  "Sub",
                                                 "FLC", "FRC", "LT", "RT", "LRT", "RLT", "RRT"};

}  // namespace

QString sourceName(std::uint8_t source) {
    const FieldCode* code = codeOf(fieldOf(FieldId::routerSource), source);
    if (code == nullptr) {
        return QString::number(source);
    }
    return QLatin1String(code->shown.data(), static_cast<qsizetype>(code->shown.size()));
}

QString shortSourceName(std::uint8_t source) {
    return source < shortNames.size() ? QString::fromUtf8(shortNames[source]) : QString::number(source);
}

}  // namespace tessavo
