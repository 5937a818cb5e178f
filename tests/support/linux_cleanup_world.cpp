#include "support/linux_cleanup_world.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include "support/paths.h"
#include "support/real_files.h"

namespace kelvane::testing {
namespace fs = std::filesystem;
namespace {

enum class At { oldFile, link, copy, nothing, other };

std::string contentsOf(const fs::path& path)
{
    if (fs::is_directory(path))  // where a link leads
        return {};
    std::ifstream file(openable(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool isCopy(const SeenFile& was, const SeenFile& now)
{
    return now.kind == was.kind && now.contents == was.contents && now.metadata == was.metadata;
}

bool isSameFile(const SeenFile& was, const SeenFile& now)
{
    return isCopy(was, now) && now.identity == was.identity;
}

// A link that leads to what was a file of the same contents, and still is.
bool isFinishedLink(const SeenTree& before, const SeenTree& now, const std::string& path)
{
    const SeenFile& link = now.at(path);
    for (const auto& [other, was] : before) {
        const auto still = now.find(other);
        if (other == path || was.contents != before.at(path).contents || still == now.end())
            continue;
        const bool leadsThere = link.kind == FileKind::link
                                    ? posix(link.target).ends_with("/files/" + other) && isSameFile(was, still->second)
                                    : link.identity == was.identity && link.metadata == was.metadata;
        if (leadsThere && link.contents == was.contents)
            return true;
    }
    return false;
}

At stateOf(const SeenTree& before, const SeenTree& now, const std::string& path)
{
    const auto found = now.find(path);
    if (found == now.end())
        return At::nothing;
    if (isSameFile(before.at(path), found->second))
        return At::oldFile;
    if (isFinishedLink(before, now, path))
        return At::link;
    return isCopy(before.at(path), found->second) ? At::copy : At::other;
}

bool holds(const SeenTree& tree, const SeenFile& file)
{
    return std::any_of(tree.begin(), tree.end(), [&](const auto& entry) { return isSameFile(file, entry.second); });
}

// Whether what is told to be done is what lies there.
bool isDone(At state, CleanupAction action, LinkKind link)
{
    if (action != CleanupAction::link)
        return state == At::nothing;
    return state == (link == LinkKind::clone ? At::oldFile : At::link);
}

}  // namespace

CleanupWorld::CleanupWorld(const fs::path& parent)
    : tree(parent),
      trash_(trashBelow(tree.path("data"))),
      held_(platform_->heldFiles(), faults),
      operations_(platform_->fileOperations(), faults),
      output_(platform_->output(), faults),
      journals_(platform_->files(), output_, tree.path("state"))
{
}

PassPorts CleanupWorld::ports()
{
    return {held_, operations_, platform_->files(), platform_->paths(), platform_->clock(), nullptr, false, &output_};
}

void CleanupWorld::make(const WorldFile& file, int number)
{
    const std::string path = "files/" + file.path;
    if (!file.alsoNameOf.empty()) {
        tree.hardLink(path, "files/" + file.alsoNameOf);
        return;
    }
    const fs::path made = openable(tree.write(path, file.contents));
    static_cast<void>(makeStream(made, "note", "number " + std::to_string(number)));
    const auto age = std::chrono::hours(number) + std::chrono::nanoseconds(123456700);
    fs::last_write_time(made,
                        fs::last_write_time(made) - std::chrono::duration_cast<fs::file_time_type::duration>(age));
    if (number % 2 != 0)
        fs::permissions(made, fs::perms::owner_read | fs::perms::group_read);
}

void CleanupWorld::build(const std::vector<WorldFile>& files)
{
    for (const char* part : {"files", "state", "data"})
        tree.remove(part);
    int number = 0;
    for (const WorldFile& file : files)
        make(file, ++number);
    listFiles(files);
}

void CleanupWorld::listFiles(const std::vector<WorldFile>& files)
{
    model_ = std::make_unique<ResultsModel>();
    std::map<std::string, std::uint32_t> groups;
    std::vector<ItemId> marked;
    for (const WorldFile& file : files) {
        if (file.role == Role::unlisted)
            continue;
        const fs::path path = tree.path("files/" + file.path);
        const auto details = platform_->files().details(path, Links::asThemselves);
        model_->add(ShellItem::make(nullptr, path.native(), details.value(), ShellItem::Place::fileSystem),
                    groups.try_emplace(file.contents, static_cast<std::uint32_t>(groups.size() + 1)).first->second,
                    false);
        if (file.role == Role::marked)
            marked.push_back(model_->order().back());
    }
    model_->mark(marked, model_->markInForce(), true);
}

CleanupFacts CleanupWorld::facts(const WorldMode& mode)
{
    definition_.properties = "System.Size";
    CleanupFacts facts{definition_, platform_->paths()};
    facts.canClone = [this, pretends = mode.pretendsToShare](const ShellItem& item) {
        const auto volume = platform_->files().volumeFacts(item.path());
        return pretends || (volume && volume->clones);
    };
    return facts;
}

CleanupPlan CleanupWorld::plan(const WorldMode& mode)
{
    return planCleanup(*model_, {mode.action, mode.link}, facts(mode)).value();
}

WorldRun CleanupWorld::clean(const WorldMode& mode)
{
    faults.canExchange = mode.canExchange;
    faults.pretendsToShare = mode.pretendsToShare;
    faults.mostNames = mode.mostNames;
    CleanupMemory memory;
    const CleanupContext context{*model_, definition_, facts(mode), ports(),   logOutput_,
                                 places_, journals_,   memory,      questions_};
    CleanupOptions options;
    options.writeLog = true;
    options.logFile = tree.path("log.txt");
    WorldRun run{runCleanup(context, {mode.action, mode.link}, options, CancelFlag()), {}};
    run.number = run.report.run;
    return run;
}

Result<std::vector<SettledRun>> CleanupWorld::settle()
{
    return settleUnfinished(journals_, ports());
}

Result<UndoOutcome> CleanupWorld::undo(RunNumber number)
{
    auto opened = journals_.reopen(number);
    if (!opened)
        return opened.error();
    undone_.clear();
    return undoRun(
        *opened, ports(), {}, [&](const UndoneItem& item) { undone_.push_back(item); }, CancelFlag());
}

SeenTree CleanupWorld::look(const fs::path& folder) const
{
    SeenTree found;
    if (!fs::exists(folder))
        return found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(openable(folder))) {
        if (entry.is_directory() && !entry.is_symlink())
            continue;
        SeenFile seen;
        const fs::path& path = entry.path();
        const auto details = platform_->files().details(path, Links::asThemselves);
        seen.kind = details.value().kind;
        seen.identity = details.value().identity;
        seen.contents = contentsOf(path);
        if (seen.kind == FileKind::link)
            seen.target = fs::read_symlink(path);
        if (seen.kind == FileKind::regular) {
            auto place = platform_->heldFiles().openFolder(path.parent_path());
            seen.metadata = place.value()->open(path.filename().native()).value()->metadata().value();
        }
        seen.metadata.accessed = 0;
        found.emplace(posix(path).substr(posix(openable(folder)).size() + 1), std::move(seen));
    }
    return found;
}

std::string CleanupWorld::unsafe(const SeenTree& before, const CleanupPlan& plan, bool takenBack) const
{
    const SeenTree now = look();
    const SeenTree inTrash = trash_ ? look(*trash_ / "files") : SeenTree();
    std::map<std::string, CleanupAction> planned;
    for (const CleanupCommand& command : plan.commands)
        planned.emplace(pathOf(command.item), command.action);
    std::ostringstream out;
    for (const auto& [path, was] : before) {
        const At state = stateOf(before, now, path);
        const auto command = planned.find(path);
        const bool isPlanned = command != planned.end();
        const bool mayGo = isPlanned && command->second != CleanupAction::link;
        if (state == At::other || (state == At::copy && !takenBack) || (state == At::link && (!isPlanned || mayGo)) ||
            (state == At::nothing && !mayGo))
            out << path << " is neither the old file nor what was planned\n";
        if (state == At::nothing && mayGo && command->second == CleanupAction::recycle && !holds(inTrash, was))
            out << path << " is not in the trash\n";
        const auto hasContents = [&](const auto& entry) { return entry.second.contents == was.contents; };
        if (std::none_of(now.begin(), now.end(), hasContents))
            out << "the contents of " << path << " are lost\n";
    }
    return out.str();
}

std::string CleanupWorld::strays(const SeenTree& before) const
{
    std::ostringstream out;
    for (const auto& [path, seen] : look())
        if (!before.contains(path))
            out << path << " is left over\n";
    if (!trash_)
        return out.str();
    const SeenTree files = look(*trash_ / "files");
    const SeenTree notes = look(*trash_ / "info");
    for (const auto& [name, seen] : files)
        if (!notes.contains(name + ".trashinfo"))
            out << name << " in the trash has no note\n";
    if (notes.size() != files.size())
        out << files.size() << " files and " << notes.size() << " notes are in the trash\n";
    return out.str();
}

std::string CleanupWorld::itemUntrue(const SeenTree& before, const SeenTree& now, const CleanupReport& report,
                                     const ItemOutcome& item) const
{
    const CleanupCommand& command = report.plan.commands.at(item.command);
    const std::string path = pathOf(command.item);
    const At state = stateOf(before, now, path);
    if (item.result != ItemResult::done)
        return state == At::oldFile || report.pass.undecided > 0 ? "" : path + " is told to be as it was\n";
    if (!isDone(state, command.action, item.link))
        return path + " is told to be done\n";
    if (command.action == CleanupAction::recycle && !holds(look(item.trashed.parent_path()), before.at(path)))
        return path + " is not where the trash is told to have it\n";
    const auto link = now.find(path);
    if (link == now.end() || item.link == LinkKind::clone)
        return {};
    const bool asTold = item.link == LinkKind::hard ? link->second.identity == now.at(pathOf(item.kept)).identity
                                                    : posix(link->second.target).ends_with(pathOf(item.kept));
    return asTold ? "" : path + " is not linked to what is told\n";
}

std::string CleanupWorld::logUntrue(const CleanupReport& report) const
{
    const std::string log = tree.read("log.txt");
    std::uint64_t failures = 0;
    for (std::size_t at = log.find("\tERROR: x"); at != std::string::npos; at = log.find("\tERROR: x", at + 1))
        ++failures;
    std::uint64_t failed = 0;
    for (const ItemOutcome& item : report.items)
        failed += item.result == ItemResult::failed ? 1 : 0;
    const std::uint64_t notDone = report.pass.errors + report.plan.skipped.size();
    const std::string tail = "Items with errors or skipped: " + std::to_string(notDone) + "\r\n";
    const bool tellsOfThem = notDone > 0 ? log.ends_with(tail) : log.find("with errors or skipped") == log.npos;
    return failures == failed && tellsOfThem ? "" : "the log tells something else: " + log + "\n";
}

std::string CleanupWorld::untrue(const SeenTree& before, const WorldRun& run) const
{
    const CleanupReport& report = run.report;
    if (!report.ran)
        return differences(before);
    std::ostringstream out;
    const SeenTree now = look();
    std::uint64_t done = 0;
    std::uint64_t errors = 0;
    std::uint64_t freed = 0;
    for (const ItemOutcome& item : report.items) {
        out << itemUntrue(before, now, report, item);
        done += item.result == ItemResult::done ? 1 : 0;
        errors += item.result == ItemResult::failed || item.result == ItemResult::declined ? 1 : 0;
        freed += item.result == ItemResult::done ? report.plan.commands.at(item.command).frees : 0;
        if (item.failure.has_value() != (item.result == ItemResult::failed))
            out << "an item has a failure without having failed, or none\n";
    }
    const PassOutcome& told = report.pass;
    if (done != told.succeeded || done != report.removed || errors != told.errors || freed != told.freed)
        out << "counted " << done << " done, " << errors << " errors, " << freed << " freed, told " << told.succeeded
            << ", " << report.removed << " removed, " << told.errors << ", " << told.freed << "\n";
    if (told.recycled != (done > 0 && report.plan.action == CleanupAction::recycle))
        out << "recycled is not told truly\n";
    return out.str() + logUntrue(report);
}

std::string CleanupWorld::journalUntrue(const SeenTree& before, const WorldRun& run, bool settled) const
{
    if (!run.number)
        return differences(before);
    Journals journals(platform_->files(), platform_->output(), journals_.folder());
    const auto read = journals.read(*run.number);
    if (!read)
        return "the journal cannot be read\n";
    const SeenTree now = look();
    std::ostringstream out;
    std::map<std::string, const JournalEntry*> written;  // an item that was taken up anew has its last entry
    for (const JournalEntry& entry : read->entries)
        written[posix(entry.intent.item).substr(posix(files()).size() + 1)] = &entry;
    for (const auto& [path, entry] : written) {
        const At state = stateOf(before, now, path);
        if (entry->state == EntryState::intended ? settled
            : entry->state == EntryState::done   ? !isDone(state, entry->intent.action, entry->link)
                                                 : state != At::oldFile)
            out << path << " is otherwise than the journal has it: " << static_cast<int>(entry->state) << "\n";
    }
    for (const CleanupCommand& command : run.report.plan.commands)
        if (!written.contains(pathOf(command.item)) && stateOf(before, now, pathOf(command.item)) != At::oldFile)
            out << pathOf(command.item) << " was not written ahead\n";
    return out.str();
}

std::string CleanupWorld::differences(const SeenTree& before) const
{
    std::ostringstream out;
    const SeenTree now = look();
    for (const auto& [path, was] : before) {
        const auto found = now.find(path);
        if (found == now.end())
            out << path << " is missing\n";
        else if (found->second.kind != was.kind || found->second.contents != was.contents)
            out << path << " has other contents\n";
        else if (!(found->second.metadata == was.metadata))
            out << path << " has other metadata\n";
    }
    return out.str() + strays(before);
}

std::string CleanupWorld::badlySettled(const SeenTree& before, const WorldRun& run)
{
    faults.stop();
    const auto settled = settle();
    const auto again = settle();
    std::ostringstream out;
    out << unsafe(before, run.report.plan) << strays(before) << journalUntrue(before, run, true);
    if (!settled || !again)
        out << "the journals could not be settled\n";
    else if (!again->empty())
        out << "there was something to settle a second time\n";
    return out.str() + (out.str().empty() ? badlyUndone(before, run) : "");
}

std::string CleanupWorld::badlyUndone(const SeenTree& before, const WorldRun& run)
{
    if (!run.number || run.report.plan.action == CleanupAction::deletePermanently)
        return {};
    faults.stop();
    const auto undone = undo(*run.number);
    if (!undone)
        return "the run could not be taken back: " + undone.error().detail + "\n";
    std::string failed;
    for (const UndoneItem& item : undone_)
        if (item.failure)
            failed += posix(item.item) + " was not taken back: " + textOf(*item.failure) + "\n";
    return failed + differences(before);
}

std::string CleanupWorld::pathOf(ItemId item) const
{
    return posix(model_->item(item).file.item().fullName()).substr(posix(files()).size() + 1);
}

std::vector<WorldFile> smallWorld(const WorldMode& mode)
{
    std::vector<WorldFile> files = {{"a/kept.txt", "one and the same", Role::kept},
                                    {"a/copy 1.txt", "one and the same", Role::marked},
                                    {"b/" + unusualNames()[1], "one and the same", Role::marked},
                                    {"b/two", "something else", Role::kept},
                                    {"a/pair", "something else", Role::marked},
                                    {"b/pair", "something else", Role::marked, "a/pair"},
                                    {"c/pair", "something else", Role::unlisted, "a/pair"},
                                    {"c/own", "only here", Role::unlisted}};
    if (mode.mostNames > 0)
        files.insert(files.begin() + 1, {"c/copy 3", "one and the same", Role::marked});
    if (mode.link == LinkKind::clone || mode.link == LinkKind::automatic)
        std::erase_if(files, [](const WorldFile& file) { return !file.alsoNameOf.empty(); });
    return files;
}

}  // namespace kelvane::testing
