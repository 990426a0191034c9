#include "pages/input/source_names.h"

namespace tessavo {

namespace {

constexpr std::array<const char*, sourceNames.size()> shortNames{
    "–", "FL", "FR", "C", "RL", "RR", "Sub", "FLC", "FRC", "LT", "RT", "LRT", "RLT", "RRT"};

}  // namespace

QString sourceName(std::uint8_t source) {
    if (source >= sourceNames.size()) {
        return QString::number(source);
    }
    return QLatin1String(sourceNames[source].data(), static_cast<qsizetype>(sourceNames[source].size()));
}

QString shortSourceName(std::uint8_t source) {
    return source < shortNames.size() ? QString::fromUtf8(shortNames[source]) : QString::number(source);
}

}  // namespace tessavo
