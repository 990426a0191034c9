#include "markdown.h"

#include <array>
#include <charconv>
#include <sstream>

namespace tessavo {

std::string table(const Row& head, const std::vector<Row>& rows) {
    std::ostringstream out;
    const auto line = [&](const Row& row) {
        for (const std::string& cell : row) {
            out << "| " << cell << ' ';
        }
        out << "|\n";
    };
    line(head);
    for (std::size_t i = 0; i < head.size(); ++i) {
        out << "| --- ";
    }
    out << "|\n";
    for (const Row& row : rows) {
        line(row);
    }
    return out.str();
}

std::string number(double value) {
    std::array<char, 64> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

std::string quoted(std::string_view name) {
    std::string out = "`";
    out.append(name).append("`");
    return out;
}

}  // namespace tessavo
