#include "cli/csv.h"

#include <ostream>

namespace kelvane {
namespace {

void writeCell(const std::string& cell, std::ostream& out)
{
    if (cell.find_first_of("\",\r\n") == std::string::npos) {
        out << cell;
        return;
    }
    out << '"';
    for (const char c : cell) {
        if (c == '"')
            out << '"';
        out << c;
    }
    out << '"';
}

}  // namespace

void writeCsvRow(const std::vector<std::string>& cells, std::ostream& out)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0)
            out << ',';
        writeCell(cells[i], out);
    }
    out << "\r\n";
}

}  // namespace kelvane
