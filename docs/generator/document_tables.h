#pragma once

#include <map>
#include <string>

namespace tessavo {

/// Every table of the documents, in Markdown, by the name that stands in the document's markers. Made from
/// the tables and constants that the program itself uses.
[[nodiscard]] std::map<std::string, std::string> documentTables();

/// Replaces what stands between "<!-- table: NAME -->" and "<!-- end -->" by the table of that name.
///
/// \param problem told when a marker names no table or is never closed; the text is then returned as it was.
[[nodiscard]] std::string fillTables(const std::string& document,
                                     const std::map<std::string, std::string>& tables, std::string& problem);

}  // namespace tessavo
