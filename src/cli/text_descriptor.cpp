#include "cli/text_descriptor.h"

#include <ostream>

#include "base/filled_text.h"
#include "cli/printable.h"
#include "cli/value_json.h"

namespace kelvane {
namespace {

void writeJson(const std::string& path, const SimDocDescriptor& descriptor, std::ostream& out)
{
    Json document;
    addPath(document, path);
    document["text"] = {
        {"length", descriptor.length()}, {"size", descriptor.size()}, {"statistics", descriptor.statistics()}};
    out << dump(document, Layout::indented) << '\n';
}

}  // namespace

void writeTextDescriptor(OutputFormat format, const std::string& path, const SimDocDescriptor& descriptor,
                         std::ostream& out)
{
    if (format == OutputFormat::json)
        return writeJson(path, descriptor, out);
    out << printable(path) << '\n'
        << "  " << filledText(TextId::titleLength) << "  " << descriptor.length() << '\n'
        << "  " << filledText(TextId::titleSize) << "  " << descriptor.size() << '\n'
        << "  " << filledText(TextId::titleStatistics);
    for (const double statistic : descriptor.statistics())
        out << "  " << statistic;
    out << '\n';
}

void writeNoTextDescriptor(const std::string& path, const std::string& reason, std::ostream& out)
{
    Json document;
    addPath(document, path);
    document["text"] = nullptr;
    document["reason"] = reason;
    out << dump(document, Layout::indented) << '\n';
}

}  // namespace kelvane
