// Rows of comma-separated values as RFC 4180 has them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace kelvane {

// Writes one row, ended by CR LF. A cell with a quotation mark, a comma or a line break is quoted, its quotation marks
// doubled.
void writeCsvRow(const std::vector<std::string>& cells, std::ostream& out);

}  // namespace kelvane
