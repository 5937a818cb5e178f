// Times cleaning up and taking back many small files: cleanup_bench FOLDER [ITEMS].
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include "cleanup/delete_pass.h"
#include "cleanup/link_pass.h"
#include "cleanup/undo.h"
#include "platform/platform.h"

namespace kelvane::bench {
namespace {

namespace fs = std::filesystem;

// Says yes to everything.
class Assent final : public CleanupQuestions {
public:
    bool includeHidden(std::u16string_view) override { return true; }
    void warn(std::u16string_view) override {}
    CleanupChoice choose(bool) override { return CleanupChoice::nothing; }
    void saveResults() override {}
    Trashless withoutTrash(std::span<const TrashlessVolume>) override { return Trashless::leaveAlone; }
    bool confirm(const CleanupSummary&) override { return true; }
    ExternalLink linkToExternal(std::u16string_view) override { return ExternalLink::yes; }
    ElevationAnswer startElevated(std::u16string_view) override { return {}; }
    bool quitAfterProblem(std::u16string_view) override { return true; }
    bool confirmStop(std::u16string_view) override { return true; }
    void showStatus(std::u16string_view) override {}
    bool notify(std::u16string_view) override { return false; }
};

class Unheard final : public PassObserver {
public:
    void groupBegins(ItemId) override {}
    void itemEnded(const ItemOutcome&) override {}
    void progress(std::uint64_t, std::uint64_t) override {}
};

// Writes nothing down: what a run takes without a journal.
class NoJournal final : public JournalWriter {
public:
    RunNumber number() const override { return RunNumber{1}; }
    Result<EntryNumber> intend(const JournalIntent&) override { return EntryNumber{next_++}; }
    Status placing(EntryNumber, const fs::path&) override { return {}; }
    Status finish(EntryNumber, EntryState, LinkKind, const fs::path&) override { return {}; }
    Status intendUndo(EntryNumber, const NativeString&) override { return {}; }
    Status finishUndo(EntryNumber, EntryState) override { return {}; }
    Status flush() override { return {}; }
    Status end() override { return {}; }

private:
    std::uint32_t next_ = 0;
};

struct Way {
    const char* name;
    CleanupAction action;
    LinkKind link;
};

constexpr Way ways[] = {{"hard links", CleanupAction::link, LinkKind::hard},
                        {"symbolic links", CleanupAction::link, LinkKind::symbolic},
                        {"clones", CleanupAction::link, LinkKind::clone},
                        {"to the trash", CleanupAction::recycle, LinkKind::none},
                        {"for good", CleanupAction::deletePermanently, LinkKind::none}};

class Bench {
public:
    Bench(fs::path folder, std::uint32_t items) : folder_(std::move(folder)), items_(items)
    {
        std::printf("%u items\n%-40s %10s %12s %12s\n", items, "step", "time", "processor", "items a s");
    }

    void measure(const Way& way)
    {
        make(way);
        clean(way, false);
        make(way);
        if (const auto run = clean(way, true); run && way.action != CleanupAction::deletePermanently)
            undo(way, *run);
    }

private:
    // Groups of five, two hundred files a folder, four kilobytes each; the device has them before a clock starts.
    void make(const Way& way)
    {
        for (const char* part : {"files", "state"})
            fs::remove_all(folder_ / part);
        model_ = std::make_unique<ResultsModel>();
        std::vector<ItemId> marked;
        for (std::uint32_t number = 0; number < items_ / 4 * 5; ++number) {
            const fs::path folder = folder_ / "files" / std::to_string(number / 200);
            const fs::path path = folder / ("copy " + std::to_string(number));
            fs::create_directories(folder);
            std::ofstream(path) << number / 5 << std::string(4'000, 'x');
            const auto details = platform_->files().details(path, Links::asThemselves);
            model_->add(ShellItem::make(nullptr, path.native(), details.value(), ShellItem::Place::fileSystem),
                        number / 5 + 1, false);
            if (number % 5 != 0)
                marked.push_back(model_->order().back());
        }
        model_->mark(marked, model_->markInForce(), true);
        CScanNode definition;
        definition.properties = "System.Size";
        CleanupFacts facts{definition, platform_->paths()};
        facts.canClone = [](const ShellItem&) { return true; };
        plan_ = planCleanup(*model_, {way.action, way.link}, facts).value();
        static_cast<void>(std::system("sync"));
    }

    std::optional<RunNumber> clean(const Way& way, bool withJournal)
    {
        std::unique_ptr<JournalWriter> journal = std::make_unique<NoJournal>();
        if (withJournal)
            journal = std::move(journals_.begin(way.action, platform_->clock().now()).value());
        Assent assent;
        Unheard unheard;
        CleanupMemory memory;
        PassOutcome outcome;
        const CancelFlag cancel;
        step(std::string(way.name) + (withJournal ? ", journal on" : ", no journal"), [&] {
            outcome = way.action == CleanupAction::link
                          ? runLinkPass(plan_, *model_, ports_, {}, memory, assent, *journal, unheard, cancel)
                          : runDeletePass(plan_, *model_, ports_, {}, assent, *journal, unheard, cancel);
            return outcome.succeeded;
        });
        return withJournal && outcome.succeeded > 0 ? std::optional(journal->number()) : std::nullopt;
    }

    void undo(const Way& way, RunNumber run)
    {
        auto opened = journals_.reopen(run);
        step(std::string(way.name) + ", taken back",
             [&] { return undoRun(opened.value(), ports_, {}, {}, CancelFlag()).restored; });
    }

    template <class Work>
    void step(const std::string& name, Work work)
    {
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t ticks = std::clock();
        const std::uint64_t done = work();
        const double processor = 1'000.0 * static_cast<double>(std::clock() - ticks) / CLOCKS_PER_SEC;
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        if (done == 0)
            std::printf("%-40s not possible here\n", name.c_str());
        else
            std::printf("%-40s %7.0f ms %9.0f ms %12.0f%s\n", name.c_str(), 1'000 * time.count(), processor,
                        static_cast<double>(done) / time.count(), done == items_ ? "" : " (not all)");
        std::fflush(stdout);
    }

    fs::path folder_;
    std::uint32_t items_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    Journals journals_{platform_->files(), platform_->output(), folder_ / "state"};
    PassPorts ports_{platform_->heldFiles(),
                     platform_->fileOperations(),
                     platform_->files(),
                     platform_->paths(),
                     platform_->clock(),
                     nullptr,
                     false,
                     &platform_->output()};
    std::unique_ptr<ResultsModel> model_;
    CleanupPlan plan_;
};

}  // namespace
}  // namespace kelvane::bench

int main(int count, char** arguments)
{
    if (count < 2) {
        std::fprintf(stderr, "cleanup_bench FOLDER [ITEMS]\n");
        return 2;
    }
    const std::uint32_t items = count > 2 ? static_cast<std::uint32_t>(std::atoi(arguments[2])) / 4 * 4 : 20'000;
    kelvane::bench::Bench bench(std::filesystem::canonical(arguments[1]), items);
    for (const auto& way : kelvane::bench::ways)
        bench.measure(way);
}
