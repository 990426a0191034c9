#include "markdown.h"

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

std::string inBackticks(std::string_view name) {
    std::string out = "`";
    out.append(name).append("`");
    return out;
}

}  // namespace tessavo
