#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "document_tables.h"
#include "house_picture.h"

namespace {

bool readFile(const std::string& path, std::string& content) {
    std::ifstream in(path, std::ios::binary);
    content.assign(std::istreambuf_iterator<char>(in), {});
    return in.good() || in.eof();
}

/// Writes what changed, or tells that it is out of date.
/// \param remedy the call of this program that brings it up to date
/// \return whether all is well
bool settle(const std::string& path, const std::string& before, const std::string& after, bool check,
            const std::string& remedy) {
    if (after == before) {
        return true;
    }
    if (check) {
        std::cerr << path << ": out of date; run " << remedy << '\n';
        return false;
    }
    std::ofstream(path, std::ios::binary) << after;
    return true;
}

}  // namespace

// tessavo_docs [--check] [--house SOURCES PICTURE] FILE...: fills the tables of the documents and draws the picture of
// the house, or tells which of them are out of date.
int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    bool check = false;
    bool well = true;
    const auto tables = tessavo::documentTables();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& path = arguments[i];
        std::string before;
        if (path == "--check") {
            check = true;
        } else if (path == "--house" && i + 2 < arguments.size()) {
            const std::string& picture = arguments[i + 2];
            readFile(picture, before);
            const std::string& sources = arguments[i + 1];
            const std::string after = tessavo::housePicture(tessavo::house::readSourceTree(sources));
            const std::string remedy = "tessavo_docs --house " + sources + " " + picture;
            well = settle(picture, before, after, check, remedy) && well;
            i += 2;
        } else if (!readFile(path, before)) {
            std::cerr << path << ": cannot be read\n";
            well = false;
        } else {
            std::string problem;
            const std::string after = tessavo::fillTables(before, tables, problem);
            if (!problem.empty()) {
                std::cerr << path << ": " << problem << '\n';
                well = false;
            } else {
                well = settle(path, before, after, check, "tessavo_docs " + path) && well;
            }
        }
    }
    return well ? 0 : 1;
}
