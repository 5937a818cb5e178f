#include <CLI/CLI.hpp>
#include <array>

#include "app/descriptor_cache.h"
#include "app/property_access.h"
#include "app/similar_search.h"
#include "base/filled_text.h"
#include "base/random.h"
#include "cli/arguments.h"
#include "cli/comparison.h"
#include "cli/problems.h"
#include "cli/requested_criteria.h"
#include "cli/settings_in_force.h"
#include "cli/verbs.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view compareExamples =
    "  kelvane-cli compare old.txt new.txt\n"
    "  kelvane-cli compare --match System.FileName,System.DateModified a/x.jpg b/x.jpg\n"
    "  kelvane-cli compare --json a.bin b.bin\n";

// A file that can be read as far as the criteria ask; the error is one to show.
Result<Ref<ShellItem>> openItem(const std::string& path, const ScanCriteria& criteria, Platform& platform)
{
    auto item = platform.shell().parse(nativeFromBytes(path));
    if (!item)
        return item;
    if ((*item)->isFolder())
        return Error{ErrorKind::wrongType, 0, filledText(TextId::isFolder)};
    if ((*item)->info().kind != FileKind::regular)
        return Error{ErrorKind::wrongType, 0, filledText(TextId::notRegularFile)};
    if (criteria.has(scan_flag::contents)) {
        if (const auto opened = openForComparing(platform.shell(), **item, criteria.options); !opened)
            return opened.error();
    }
    return item;
}

// What a scan would have decided before comparing anything.
void noteIfLeftOut(const std::string& path, const ShellItem& item, const ScanCriteria& criteria, const Console& console)
{
    if (!criteria.masks.admits(bytesFromNative(item.name())))
        complain(console, path + ": " + filledText(TextId::masksLeaveOut));
    const std::uint64_t bytes = item.info().size.bytes;
    const bool tiny = criteria.has(scan_flag::ignoreSmall) && bytes <= criteria.options.tinyFile.bytes;
    if (!criteria.sizes.holds(bytes) || tiny)
        complain(console, path + ": " + filledText(TextId::sizeLeavesOut));
}

ExitCode print(OutputFormat format, const Comparison& comparison, const Console& console)
{
    if (comparison.result.cancelled())
        return stopCancelled(console);
    writeComparison(format, comparison, console.out);
    return comparison.result.match() ? ExitCode::done : ExitCode::incomplete;
}

ExitCode compare(const ScanRequest& request, const Settings& settings, const Arguments& files, Platform& platform,
                 const Console& console)
{
    seedRandom(request.seed.value_or(platform.clock().ticks()));
    DescriptorCache cache(request.useCache, settings, platform.runCaches());
    const PropertyAccess properties(platform, request.options, &cache, &console.cancel);
    complainOf(properties.plugins->takeComplaints(), console);
    SimilarSearch similar(properties, ProbeNumbers::shared, request.options.threads, platform);
    const auto criteria = requestedCriteria(request, properties.catalogue, similar.content());
    if (!criteria)
        return refuse(console, criteria.error().detail);
    std::vector<Candidate> opened;
    for (const std::string& file : files) {
        auto item = openItem(file, *criteria, platform);
        if (!item)
            return refuse(console, file + ": " + errorText(item.error()));
        noteIfLeftOut(file, **item, *criteria, console);
        opened.emplace_back(*item);
    }
    std::array<Candidate, 2> pair = {std::move(opened[0]), std::move(opened[1])};
    const Comparison compared{
        comparePair(pair, *criteria, properties.source, similar.content(), platform, console.cancel), files[0],
        files[1]};
    complainOf(compared.complaints, console);
    complainOf(properties.takeComplaints(), console);
    return print(request.format, compared, console);
}

}  // namespace

ExitCode compareVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::compareAbout), "compare");
    app.footer(footerText({TextId::compareNotes, compareExamples, TextId::compareExitCode}));
    std::vector<std::string> files;
    app.add_option("FILE", files, filledText(TextId::compareFilesHelp))->type_name("");
    RawOptions raw;
    addOptions(app, raw);
    if (const auto over = parseArguments(app, "A B", arguments, console))
        return *over;
    if (files.size() != 2)
        return refuse(console, filledText(TextId::compareNeedsFiles) + helpHint("compare"));
    const auto settings = scanSettings(raw.settings, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    const auto request = makeRequest(raw, {}, platform.paths(), settings->options);
    if (!request)
        return refuse(console, request.error().detail);
    if (request->format == OutputFormat::null)
        return refuse(console, filledText(TextId::verbPrints, {"compare", "text, json, csv"}));
    return compare(*request, settings->settings, files, platform, console);
}

}  // namespace kelvane
