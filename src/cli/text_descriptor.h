// How the descriptor of a text is printed.
#pragma once

#include <iosfwd>
#include <string>

#include "cli/options.h"
#include "props/sim_doc_descriptor.h"

namespace kelvane {

// As text or JSON; the path as it was typed.
void writeTextDescriptor(OutputFormat format, const std::string& path, const SimDocDescriptor& descriptor,
                         std::ostream& out);

// For programs: that there is none, and why.
void writeNoTextDescriptor(const std::string& path, const std::string& reason, std::ostream& out);

}  // namespace kelvane
