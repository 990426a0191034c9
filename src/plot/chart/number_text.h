#pragma once

#include <QStringView>
#include <optional>
#include <string>

namespace tessavo {

/// "%.<digits>g" as the C locale writes it, whatever the locale of the process is.
/// \param significantDigits 1 to 17
[[nodiscard]] std::string shortNumber(double value, int significantDigits = 6);

/// Reads what a person typed: blanks around it, a leading plus and a decimal comma are accepted.
/// \return nothing unless the whole text is one number; "inf" and "nan" are numbers here
[[nodiscard]] std::optional<double> parseNumber(QStringView text);

}  // namespace tessavo
