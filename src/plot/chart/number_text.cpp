#include "plot/chart/number_text.h"

#include <QString>
#include <array>
#include <charconv>

namespace tessavo {

std::string shortNumber(double value, int significantDigits) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::general, significantDigits);
    return {text.data(), result.ptr};
}

std::optional<double> parseNumber(QStringView typed) {
    QString text = typed.trimmed().toString();
    if (text.startsWith(QLatin1Char('+')) && !text.startsWith(QLatin1String("+-"))) {
        text.remove(0, 1);
    }
    if (!text.contains(QLatin1Char('.')) && text.count(QLatin1Char(',')) == 1) {
        text.replace(QLatin1Char(','), QLatin1Char('.'));
    }
    const QByteArray bytes = text.toUtf8();
    double value = 0;
    const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), value);
    if (error != std::errc() || end != bytes.data() + bytes.size() || bytes.isEmpty()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace tessavo
