#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "document_tables.h"

// tessavo_docs [--check] FILE...: fills the tables of the documents, or tells which of them are out of date.
int main(int argc, char** argv) {
    bool check = false;
    int status = 0;
    const auto tables = tessavo::documentTables();
    for (int i = 1; i < argc; ++i) {
        const std::string path = argv[i];
        if (path == "--check") {
            check = true;
            continue;
        }
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            std::cerr << path << ": cannot be read\n";
            return 1;
        }
        const std::string before{std::istreambuf_iterator<char>(in), {}};
        in.close();
        std::string problem;
        const std::string after = tessavo::fillTables(before, tables, problem);
        if (!problem.empty()) {
            std::cerr << path << ": " << problem << '\n';
            status = 1;
        } else if (after != before) {
            if (check) {
                std::cerr << path << ": tables are out of date; run tessavo_docs on it\n";
                status = 1;
            } else {
                std::ofstream(path, std::ios::binary) << after;
            }
        }
    }
    return status;
}
