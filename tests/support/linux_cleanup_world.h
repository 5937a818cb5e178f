// A real tree with groups of equal files, the ports of a clean-up over it, and what must hold whatever goes wrong.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cleanup/cleanup_run.h"
#include "cleanup/settle.h"
#include "cleanup/undo.h"
#include "platform/platform.h"
#include "support/fake_cleanup_questions.h"
#include "support/fake_places.h"
#include "support/faulty_held_files.h"
#include "support/faulty_output.h"
#include "support/real_files.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

// What lies at a path. Contents are those that the path leads to; the time of access is left out.
struct SeenFile {
    FileKind kind = FileKind::other;
    FileIdentity identity;
    std::filesystem::path target;  // of a link
    std::string contents;
    FileMetadata metadata;
};
using SeenTree = std::map<std::string, SeenFile>;  // by path, "/" between components

enum class Role { kept, marked, unlisted };

struct WorldFile {
    std::string path;
    std::string contents;  // the listed files of one content make a group
    Role role = Role::kept;
    std::string alsoNameOf{};  // another name of that file instead of a file of its own
};

// How a run goes, and on what kind of file system.
struct WorldMode {
    const char* name = "";
    CleanupAction action = CleanupAction::link;
    LinkKind link = LinkKind::none;
    bool canExchange = true;
    bool pretendsToShare = false;
    std::uint32_t mostNames = 0;
    friend std::ostream& operator<<(std::ostream& out, const WorldMode& mode) { return out << mode.name; }
};

// One clean-up with what was told of it; without a number no journal could be begun, and nothing was done.
struct WorldRun {
    CleanupReport report;
    std::optional<RunNumber> number;
};

// Everything lies below one temporary folder: "files", and the journals in "state". Used by one thread.
class CleanupWorld {
public:
    explicit CleanupWorld(const std::filesystem::path& parent = quickFolder());

    // The files anew, and no journals. Each has metadata of its own.
    void build(const std::vector<WorldFile>& files);
    // Takes the place of the list that build() made.
    void list(std::unique_ptr<ResultsModel> model) { model_ = std::move(model); }
    [[nodiscard]] CleanupPlan plan(const WorldMode& mode);
    // The whole run, with a log. The journal and the passes meet the faults, listing and planning do not.
    [[nodiscard]] WorldRun clean(const WorldMode& mode);
    [[nodiscard]] Result<std::vector<SettledRun>> settle();
    [[nodiscard]] Result<UndoOutcome> undo(RunNumber number);
    [[nodiscard]] const std::vector<UndoneItem>& undone() const { return undone_; }  // by the last undo()
    [[nodiscard]] Journals& journals() { return journals_; }

    [[nodiscard]] SeenTree look() const { return look(files()); }
    [[nodiscard]] SeenTree look(const std::filesystem::path& folder) const;
    // Where this system lets a test have a trash of its own.
    [[nodiscard]] const std::optional<std::filesystem::path>& trash() const { return trash_; }
    void expectTrashAt(const std::filesystem::path& folder) { trash_ = folder; }

    // Each gives complaints, one a line; nothing is well. None of them meets the faults.
    // Every content has a live path, and every path holds the old file or a finished link, or is gone as planned; while
    // it is being taken back, a copy of the old file as well.
    [[nodiscard]] std::string unsafe(const SeenTree& before, const CleanupPlan& plan, bool takenBack = false) const;
    // Names that were not there before, and what the trash has only half.
    [[nodiscard]] std::string strays(const SeenTree& before) const;
    // What was told of each item, the sums and the log against the disk.
    [[nodiscard]] std::string untrue(const SeenTree& before, const WorldRun& run) const;
    // The journal against the disk. Undecided entries are complained of where all was settled.
    [[nodiscard]] std::string journalUntrue(const SeenTree& before, const WorldRun& run, bool settled) const;
    // Contents and metadata, not which names are of one file.
    [[nodiscard]] std::string differences(const SeenTree& before) const;
    // Settles what a run left, looks at it, and takes the run back.
    [[nodiscard]] std::string badlySettled(const SeenTree& before, const WorldRun& run);
    [[nodiscard]] std::string badlyUndone(const SeenTree& before, const WorldRun& run);

    [[nodiscard]] std::filesystem::path files() const { return tree.path("files"); }
    [[nodiscard]] PassPorts ports();
    [[nodiscard]] Platform& platform() { return *platform_; }

    TempTree tree;
    FaultPlan faults;

private:
    void make(const WorldFile& file, int number);
    void listFiles(const std::vector<WorldFile>& files);
    [[nodiscard]] CleanupFacts facts(const WorldMode& mode);
    [[nodiscard]] std::string pathOf(ItemId item) const;  // as a key of a seen tree
    [[nodiscard]] std::string logUntrue(const CleanupReport& report) const;
    [[nodiscard]] std::string itemUntrue(const SeenTree& before, const SeenTree& now, const CleanupReport& report,
                                         const ItemOutcome& item) const;

    std::optional<std::filesystem::path> trash_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    FaultyHeldFiles held_;
    FaultyOperations operations_;
    FaultyOutput output_;
    FaultPlan noFaults_;
    FaultyOutput logOutput_{platform_->output(), noFaults_};
    Journals journals_;
    std::unique_ptr<ResultsModel> model_;
    FakeCleanupQuestions questions_;
    FakePlaces places_{tree.path()};
    CScanNode definition_;
    std::vector<UndoneItem> undone_;
};

// Two groups: a name that is no plain one, and two names of one file that both go. Not so where clones are made, since
// a clone with further names is never taken back.
[[nodiscard]] std::vector<WorldFile> smallWorld(const WorldMode& mode);

}  // namespace kelvane::testing
