#include "cli/clean_options.h"

#include <CLI/CLI.hpp>
#include <array>

#include "base/filled_text.h"
#include "cli/arguments.h"
#include "cli/choices.h"
#include "cli/folder_names.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "cli/view_options.h"

namespace kelvane {
namespace {

constexpr std::array rules = {
    Choice<KeepRule>{"biggest", KeepRule::biggest}, Choice<KeepRule>{"smallest", KeepRule::smallest},
    Choice<KeepRule>{"newest", KeepRule::newest},   Choice<KeepRule>{"oldest", KeepRule::oldest},
    Choice<KeepRule>{"first", KeepRule::first},     Choice<KeepRule>{"last", KeepRule::last},
};
constexpr std::array linkKinds = {
    Choice<LinkKind>{"hard", LinkKind::hard},
    Choice<LinkKind>{"symbolic", LinkKind::symbolic},
    Choice<LinkKind>{"clone", LinkKind::clone},
    Choice<LinkKind>{"auto", LinkKind::automatic},
};

class Declarer {
public:
    explicit Declarer(CLI::App& app) : app_(app) {}
    void group(TextId name) { group_ = filledText(name); }
    void flag(const char* name, bool& value, TextId help)
    {
        app_.add_flag(name, value, filledText(help))->group(group_);
    }
    void word(const char* name, std::string& value, const char* type, TextId help)
    {
        app_.add_option(name, value, filledText(help))->check(notEmpty)->type_name(type)->take_last()->group(group_);
    }
    void words(const char* name, std::vector<std::string>& values, const char* type, TextId help)
    {
        app_.add_option(name, values, filledText(help))
            ->check(notEmpty)
            ->type_name(type)
            ->allow_extra_args(false)
            ->group(group_);
    }

private:
    CLI::App& app_;
    std::string group_;
};

Result<MarkingRule> keepRule(const std::string& typed)
{
    const auto rule = choose<KeepRule>(TextId::unknownKeepRule, typed, rules);
    if (!rule)
        return rule.error();
    return MarkingRule{*rule, {}, {}};
}

Result<MarkingRule> underRule(const std::string& typed, const FolderNames& names)
{
    auto folder = names.bestForm(typed);
    if (!folder)
        return folder.error();
    return MarkingRule{KeepRule::under, std::move(*folder), {}};
}

// The two options are one chain, in the order in which they were typed.
Status readChain(const CLI::App& app, const RawClean& raw, const FolderNames& names, MarkingPlan& marks)
{
    auto keep = raw.keep.begin();
    auto under = raw.keepUnder.begin();
    for (const CLI::Option* option : app.parse_order()) {
        const std::string name = option->get_name();
        if (name != "--keep" && name != "--keep-under")
            continue;
        auto rule = name == "--keep" ? keepRule(*keep++) : underRule(*under++, names);
        if (!rule)
            return rule.error();
        marks.chain.push_back(std::move(*rule));
    }
    return {};
}

Status addFolders(const std::vector<std::string>& typed, const FolderNames& names, std::vector<std::string>& folders)
{
    for (const std::string& folder : typed) {
        auto forms = names.forms(folder);
        if (!forms)
            return forms.error();
        folders.insert(folders.end(), forms->begin(), forms->end());
    }
    return {};
}

Status readMarks(const CLI::App& app, const RawClean& raw, const FolderNames& names, MarkingPlan& marks)
{
    if (auto read = readChain(app, raw, names, marks); !read)
        return read;
    if (auto read = addFolders(raw.prefer, names, marks.preferredFolders); !read)
        return read;
    if (auto read = addFolders(raw.protect, names, marks.protectedFolders); !read)
        return read;
    if (marks.chain.empty() && marks.preferredFolders.empty())
        return invalid(filledText(TextId::cleanNeedsRule) + helpHint("clean"));
    return {};
}

Status readAction(const RawClean& raw, CleanupRequest& action)
{
    std::vector<std::string_view> given;
    if (raw.toTrash)
        given.emplace_back("--delete");
    if (raw.permanently)
        given.emplace_back("--delete-permanently");
    if (!raw.link.empty())
        given.emplace_back("--link");
    if (given.size() > 1)
        return invalid(filledText(TextId::optionsExclude, {given[0], given[1]}));
    if (raw.permanently)
        action.action = CleanupAction::deletePermanently;
    if (raw.link.empty())
        return {};
    const auto kind = choose<LinkKind>(TextId::unknownLinkKind, raw.link, linkKinds);
    if (!kind)
        return kind.error();
    action.action = CleanupAction::link;
    action.link = *kind;
    return {};
}

// By its first bytes: the byte-order mark, and what every log begins with.
bool isCleanupLog(const std::filesystem::path& path, FileSystem& files)
{
    constexpr std::array beginning = {std::byte{0xEF}, std::byte{0xBB}, std::byte{0xBF},
                                      std::byte{'*'},  std::byte{'*'},  std::byte{'*'}};
    const auto reader = files.openForReading(path, ReadPattern::sequential, Links::followed);
    std::array<std::byte, beginning.size()> start{};
    if (!reader)
        return false;
    const auto read = (*reader)->read(start);
    return read && *read == start.size() && start == beginning;
}

// Asked before anything is done: afterwards nobody could choose another place.
Status readLog(const RawClean& raw, FileSystem& files, std::filesystem::path& log)
{
    if (raw.log.empty())
        return {};
    log = namedFile(raw.log);
    const auto folder = files.details(log.parent_path(), Links::followed);
    if (!folder)
        return invalid(raw.log + ": " + errorText(folder.error()));
    const auto there = files.details(log, Links::followed);
    if (!there && there.error().kind == ErrorKind::notFound)
        return {};
    if (!there)
        return invalid(raw.log + ": " + errorText(there.error()));
    if (there->kind != FileKind::regular || !isCleanupLog(log, files))
        return invalid(filledText(TextId::notACleanupLog, {raw.log}));
    return {};
}

Status readRunning(const RawClean& raw, CleanRequest& request)
{
    const auto progress = chooseProgress(raw.progress);
    if (!progress)
        return progress.error();
    request.progress = *progress;
    request.compareInFull = !raw.noCompare;
    request.dryRun = raw.dryRun;
    request.yes = raw.yes;
    request.verbose = raw.verbose;
    return {};
}

}  // namespace

void addCleanOptions(CLI::App& app, RawClean& raw)
{
    Declarer add(app);
    app.add_option("FILE", raw.files, filledText(TextId::savedScanHelp))->type_name("");
    add.group(TextId::groupRules);
    add.words("--keep", raw.keep, "WORD", TextId::helpKeep);
    add.words("--keep-under", raw.keepUnder, "DIR", TextId::helpKeepUnder);
    add.words("--prefer", raw.prefer, "DIR", TextId::helpPrefer);
    add.words("--protect", raw.protect, "DIR", TextId::helpProtect);
    add.word("--sort", raw.sort, "KEYS", TextId::helpCleanSort);
    add.group(TextId::groupAction);
    add.flag("--delete", raw.toTrash, TextId::helpDelete);
    add.flag("--delete-permanently", raw.permanently, TextId::helpDeletePermanently);
    add.word("--link", raw.link, "KIND", TextId::helpLink);
    add.flag("--no-compare", raw.noCompare, TextId::helpNoCompare);
    add.flag("--dry-run", raw.dryRun, TextId::helpDryRun);
    add.flag("--yes", raw.yes, TextId::helpYes);
    add.group(TextId::groupOutput);
    add.word("--log", raw.log, "FILE", TextId::helpLog);
    add.flag("--verbose", raw.verbose, TextId::helpCleanVerbose);
    add.word("--progress", raw.progress, "WORD", TextId::helpProgress);
    add.word("--format", raw.format, "WORD", TextId::describeFormatHelp);
    add.flag("--json", raw.json, TextId::helpJson);
    add.group(TextId::groupRun);
    add.word("--settings", raw.settings, "FILE", TextId::helpSettings);
}

Result<CleanRequest> makeCleanRequest(const CLI::App& app, const RawClean& raw, const SavedScan& scan,
                                      Platform& platform)
{
    CleanRequest request;
    const auto format = chooseReportFormat(raw.format, raw.json);
    if (!format)
        return format.error();
    request.format = *format;
    const FolderNames names(scan, platform);
    for (const Status& read : {readAction(raw, request.action), readMarks(app, raw, names, request.marks),
                               readRunning(raw, request), readLog(raw, platform.files(), request.log)}) {
        if (!read)
            return read.error();
    }
    auto keys = parseSortKeys(raw.sort, scan.properties.catalogue);
    if (!keys)
        return keys.error();
    request.sort = std::move(*keys);
    return request;
}

}  // namespace kelvane
