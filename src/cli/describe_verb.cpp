#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <ostream>

#include "app/property_access.h"
#include "base/filled_text.h"
#include "base/size_text.h"
#include "base/utf.h"
#include "cli/arguments.h"
#include "cli/choices.h"
#include "cli/described_content.h"
#include "cli/options.h"
#include "cli/printable.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "cli/value_json.h"
#include "cli/verbs.h"
#include "platform/native_text.h"
#include "props/value_convert.h"

namespace kelvane {
namespace {

constexpr std::string_view describeExamples = "  kelvane-cli describe photo.jpg\n"
                                              "  kelvane-cli describe --json photo.jpg\n"
                                              "  kelvane-cli describe --as text --json letter.odt\n"
                                              "  kelvane-cli describe --as audio song.flac\n"
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

Json asJson(const std::string& path, const std::vector<Described>& all)
{
    Json properties = Json::object();
    for (const Described& described : all)
        properties[std::string(described.property.info->name)] = valueJson(described.value, described.node->raw);
    Json document;
    addPath(document, path);
    document["properties"] = std::move(properties);
    return document;
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

// Programs are told of the descriptor as well, where the file has the one that files of its name have.
void addUsualDescriptor(Json& document, const ShellItem& item, const PropertyAccess& properties, Platform& platform,
                        const CancelFlag& cancel)
{
    const auto kind = usualDescriptor(item, properties);
    if (!kind)
        return;
    DescribedContent content = describeContent(*kind, item, properties, platform, cancel);
    if (!content.json.is_null())
        document[std::string(descriptorWord(*kind))] = std::move(content.json);
}

ExitCode describeFile(const std::string& path, OutputFormat format, const PropertyAccess& properties,
                      Platform& platform, const Console& console)
{
    const auto item = platform.shell().parse(nativeFromBytes(path));
    if (!item)
        return refuse(console, path + ": " + errorText(item.error()));
    ItemContext file(*item);
    const std::vector<Described> all = describe(file, properties.source, console.cancel);
    Json document;
    if (format == OutputFormat::json) {
        document = asJson(path, all);
        addUsualDescriptor(document, **item, properties, platform, console.cancel);
    }
    if (console.cancel.cancelled())
        return stopCancelled(console);
    if (format == OutputFormat::json)
        console.out << dump(document, Layout::indented) << '\n';
    else
        writeText(path, all, console.out);
    return ExitCode::done;
}

void writeDescriptor(const std::string& path, DescriptorKind kind, const DescribedContent& content, OutputFormat format,
                     std::ostream& out)
{
    if (format == OutputFormat::json) {
        Json document;
        addPath(document, path);
        document[std::string(descriptorWord(kind))] = content.json;
        if (content.json.is_null())
            document["reason"] = causeText(content.cause);
        out << dump(document, Layout::indented) << '\n';
    } else if (!content.json.is_null()) {
        out << printable(path) << '\n';
        for (const auto& [title, value] : content.lines)
            out << "  " << title << "  " << value << '\n';
    }
}

ExitCode describeAs(DescriptorKind kind, const std::string& path, OutputFormat format, const PropertyAccess& properties,
                    Platform& platform, const Console& console)
{
    const auto item = platform.shell().parse(nativeFromBytes(path));
    if (!item)
        return refuse(console, path + ": " + errorText(item.error()));
    if ((*item)->info().kind != FileKind::regular)
        return refuse(console, path + ": " + filledText(TextId::notRegularFile));
    const DescribedContent content = describeContent(kind, **item, properties, platform, console.cancel);
    if (console.cancel.cancelled())
        return stopCancelled(console);
    writeDescriptor(path, kind, content, format, console.out);
    if (!content.json.is_null())
        return ExitCode::done;
    complain(console, filledText(TextId::noDescriptor, {path, causeText(content.cause)}));
    complainOf(properties.takeComplaints(), console);
    return ExitCode::incomplete;
}

// What --as asks for; nothing without it.
Result<std::optional<DescriptorKind>> chosenDescriptor(const std::string& word)
{
    constexpr std::array choices = {Choice<DescriptorKind>{"text", DescriptorKind::text},
                                    Choice<DescriptorKind>{"audio", DescriptorKind::audio},
                                    Choice<DescriptorKind>{"image", DescriptorKind::image}};
    if (word.empty())
        return std::optional<DescriptorKind>();
    const auto chosen = choose<DescriptorKind>(TextId::unknownDescriptor, word, choices);
    if (!chosen)
        return chosen.error();
    return std::optional(*chosen);
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
    app.footer(footerText({{}, describeExamples, {}}));
    RawDescribe raw;
    addDescribeOptions(app, raw);
    if (const auto over = parseArguments(app, "FILE", arguments, console))
        return *over;
    const auto descriptor = chosenDescriptor(raw.descriptor);
    if (!descriptor)
        return refuse(console, descriptor.error().detail);
    const auto format = chooseFormat(raw.format, raw.json);
    if (!format)
        return refuse(console, format.error().detail);
    if (*format != OutputFormat::text && *format != OutputFormat::json)
        return refuse(console, filledText(TextId::verbPrints, {"describe", "text, json"}));
    const auto settings = engineSettings(raw.settings, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    const PropertyAccess properties(platform, *settings, nullptr, &console.cancel);
    complainOf(properties.plugins->takeComplaints(), console);
    if (raw.list) {
        writeNames(*format, properties.catalogue, console.out);
        return ExitCode::done;
    }
    if (raw.files.size() != 1)
        return refuse(console, filledText(TextId::describeNeedsFile) + helpHint("describe"));
    if (*descriptor)
        return describeAs(**descriptor, raw.files.front(), *format, properties, platform, console);
    return describeFile(raw.files.front(), *format, properties, platform, console);
}

}  // namespace kelvane
