#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <ostream>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "base/utf.h"
#include "cli/arguments.h"
#include "cli/choices.h"
#include "cli/options.h"
#include "cli/printable.h"
#include "cli/problems.h"
#include "cli/property_access.h"
#include "cli/settings_in_force.h"
#include "cli/similar_search.h"
#include "cli/text_descriptor.h"
#include "cli/value_json.h"
#include "cli/verbs.h"
#include "engine/document_description.h"
#include "platform/native_text.h"
#include "props/value_convert.h"

namespace kelvane {
namespace {

constexpr std::string_view examples = "  kelvane-cli describe photo.jpg\n"
                                      "  kelvane-cli describe --json photo.jpg\n"
                                      "  kelvane-cli describe --as text --json letter.odt\n"
                                      "  kelvane-cli describe --list\n";

constexpr std::uint64_t leastRounded = 10 * 1024;  // below, a size is shown in bytes anyway

struct RawDescribe {
    std::vector<std::string> files;
    std::string descriptor, format, settings;
    bool json = false, list = false;
};

struct Described {
    PropRef property;
    PropValue value;
    const PROPCACHE* node = nullptr;
};

// Only a scan gives a file a group; descriptors and previews are objects, which have no text. The text of a document is
// no property that one would read in a list.
bool canBeShown(const PropRef& property)
{
    return property.info->type != VarType::object && property.identifier != property_id::groupId &&
           property.info->name != "System.Search.Contents";
}

// Every property that has a value, the system's first, then the program's own.
std::vector<Described> describe(ItemContext& file, const PropertySource& source, const CancelFlag& cancel)
{
    std::vector<Described> all;
    for (const std::string& name : source.catalogue().names()) {
        if (cancel.cancelled())
            break;
        const PropRef property = source.catalogue().byName(name);
        if (!property || !canBeShown(property))
            continue;
        const PROPCACHE& node = source.cached(file, property);
        if (const PropValue value = source.value(file, property); !value.missing())
            all.push_back({property, value, &node});
    }
    return all;
}

std::string valueText(const Described& described)
{
    std::string text = printable(toUtf8(formatRaw(described.node->raw)));
    if (described.property.identifier == property_id::size && described.value.bits >= leastRounded)
        text += " (" + sizeText({described.value.bits}) + ')';
    return text;
}

void writeText(const std::string& path, const std::vector<Described>& all, std::ostream& out)
{
    std::size_t width = 0;
    for (const Described& described : all)
        width = std::max(width, described.property.info->name.size());
    out << printable(path) << '\n';
    for (const Described& described : all) {
        const std::string_view name = described.property.info->name;
        out << "  " << name << std::string(width - name.size() + 2, ' ') << valueText(described) << '\n';
    }
}

void writeJson(const std::string& path, const std::vector<Described>& all, std::ostream& out)
{
    Json properties = Json::object();
    for (const Described& described : all)
        properties[std::string(described.property.info->name)] = valueJson(described.value, described.node->raw);
    Json document;
    addPath(document, path);
    document["properties"] = std::move(properties);
    out << dump(document, Layout::indented) << '\n';
}

void writeNames(OutputFormat format, const PropertyCatalogue& catalogue, std::ostream& out)
{
    const std::vector<std::string> names = catalogue.names();
    if (format == OutputFormat::json) {
        out << dump({{"properties", names}}, Layout::indented) << '\n';
        return;
    }
    for (const std::string& name : names)
        out << name << '\n';
}

ExitCode describeFile(const std::string& path, OutputFormat format, const PropertySource& source, Platform& platform,
                      const Console& console)
{
    const auto item = platform.shell().parse(nativeFromBytes(path));
    if (!item)
        return refuse(console, path + ": " + errorText(item.error()));
    ItemContext file(*item);
    const std::vector<Described> all = describe(file, source, console.cancel);
    if (console.cancel.cancelled())
        return stopCancelled(console);
    format == OutputFormat::json ? writeJson(path, all, console.out) : writeText(path, all, console.out);
    return ExitCode::done;
}

ExitCode describeText(const std::string& path, OutputFormat format, TextExtraction& extraction, Platform& platform,
                      const Console& console)
{
    const auto item = platform.shell().parse(nativeFromBytes(path));
    if (!item)
        return refuse(console, path + ": " + errorText(item.error()));
    if ((*item)->info().kind != FileKind::regular)
        return refuse(console, path + ": " + filledText(TextId::notRegularFile));
    const DocumentDescriber describer(platform.shell(), extraction, nullptr);
    const DocumentDescription described = describer.describe(**item, false, console.cancel);
    if (console.cancel.cancelled())
        return stopCancelled(console);
    if (!described.descriptor) {
        const std::string reason = causeText(described.cause());
        if (format == OutputFormat::json)
            writeNoTextDescriptor(path, reason, console.out);
        complain(console, filledText(TextId::noDescriptor, {path, reason}));
        complainOfMissingTools(extraction, console);
        return ExitCode::incomplete;
    }
    writeTextDescriptor(format, path, *described.descriptor, console.out);
    return ExitCode::done;
}

// What --as asks for, where it can be had; only texts are described yet.
Status checkDescriptor(const std::string& word)
{
    constexpr std::array choices = {Choice<bool>{"text", true}, Choice<bool>{"audio", false},
                                    Choice<bool>{"image", false}};
    if (word.empty())
        return {};
    const auto built = choose<bool>(TextId::unknownDescriptor, word, choices);
    if (!built)
        return built.error();
    if (!*built)
        return Error{ErrorKind::notSupported, 0, filledText(TextId::notBuiltYet, {"describe --as " + word})};
    return {};
}

void addDescribeOptions(CLI::App& app, RawDescribe& raw)
{
    app.add_option("FILE", raw.files, filledText(TextId::describeFileHelp))->type_name("");
    app.add_option("--as", raw.descriptor, filledText(TextId::describeAsHelp))->type_name("WORD");
    app.add_option("--format", raw.format, filledText(TextId::describeFormatHelp))->type_name("WORD")->take_last();
    app.add_flag("--json", raw.json, filledText(TextId::helpJson));
    app.add_option("--settings", raw.settings, filledText(TextId::helpSettings))->type_name("FILE")->take_last();
    app.add_flag("--list", raw.list, filledText(TextId::describeListHelp));
}

}  // namespace

ExitCode describeVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::describeAbout), "describe");
    app.footer(footerText({{}, examples, {}}));
    RawDescribe raw;
    addDescribeOptions(app, raw);
    if (const auto over = parseArguments(app, "FILE", arguments, console))
        return *over;
    if (const Status known = checkDescriptor(raw.descriptor); !known)
        return refuse(console, known.error().detail);
    const auto format = chooseFormat(raw.format, raw.json);
    if (!format)
        return refuse(console, format.error().detail);
    if (*format != OutputFormat::text && *format != OutputFormat::json)
        return refuse(console, filledText(TextId::verbPrints, {"describe", "text, json"}));
    const auto settings = engineSettings(raw.settings, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    const PropertyAccess properties(platform, *settings);
    properties.plugins->complainOf(console);
    if (raw.list) {
        writeNames(*format, properties.catalogue, console.out);
        return ExitCode::done;
    }
    if (raw.files.size() != 1)
        return refuse(console, filledText(TextId::describeNeedsFile) + helpHint("describe"));
    if (!raw.descriptor.empty())
        return describeText(raw.files.front(), *format, *properties.extraction, platform, console);
    return describeFile(raw.files.front(), *format, properties.source, platform, console);
}

}  // namespace kelvane
