// How long a clean-up keeps its window from answering: cleaning_bench [FILES [ROWS]]. Marks four of five equal files by
// the mark wizard and cleans them up through the dialogs, on the offscreen platform; ROWS is for the wizard's preview
// alone.
#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QRadioButton>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "app/engine_settings.h"
#include "heart.h"
#include "made_up_files.h"
#include "ui/clean_world.h"

namespace kelvane::bench {
namespace {

using testing::CleanWorld;
using testing::waitUntil;

constexpr auto patience = std::chrono::minutes(10);
constexpr int inGroup = 5, inFolder = 500;
constexpr int askedEveryMs = 20;

// One step of a person: until its end both threads of the window are asked to answer.
class Step {
public:
    Step(CleanWorld& clean, const char* name) : name_(name)
    {
        QObject::connect(&asking_, &QTimer::timeout, &asking_, [this, &clean] {
            QElapsedTimer asked;
            asked.start();
            clean.world.link().fetch(
                &asking_, [](Workbench&) { return 0; },
                [this, asked](int) { longest_ = std::max(longest_, asked.elapsed()); });
        });
        asking_.start(askedEveryMs);
        whole_.start();
    }
    ~Step()
    {
        std::printf("%-44s %8lld ms %8lld ms %8lld ms %8lld ms\n", name_, static_cast<long long>(whole_.elapsed()),
                    static_cast<long long>(heart_.longest()), static_cast<long long>(heart_.longestWork()),
                    static_cast<long long>(longest_));
        std::fflush(stdout);
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

private:
    const char* name_;
    QElapsedTimer whole_;
    Heart heart_;
    QTimer asking_;
    qint64 longest_ = 0;
};

void must(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "did not come: %s\n", what);
    std::exit(1);
}

class CleaningBench {
public:
    explicit CleaningBench(int files) : files_(files) {}

    void preview(std::uint32_t rows)
    {
        clean_.world.onWindowThread([rows](Workbench& bench) {
            const Settings settings = bench.desktop().settings();
            bench.beginList(settings, engineOptionsFrom(settings));
            MadeUpFiles(1).make(rows, [&](Ref<const ShellItem> file, std::uint32_t group) {
                bench.results().add(std::move(file), group, false);
            });
        });
        std::printf("%u made-up rows\n", rows);
        heading();
        clean_.world.find<QWidget>("pane.marking")->show();
        wizard();
        const Step step(clean_, "all ticks off, and the pane");
        must(clean_.world.trigger("mark.clear"), "clear");
        must(waitUntil([&] { return figures().ticked.items == 0; }, patience), "no ticks");
    }

    void load()
    {
        std::vector<std::vector<std::string>> groups(static_cast<std::size_t>((files_ + inGroup - 1) / inGroup));
        for (int number = 0; number < files_; ++number)
            groups[static_cast<std::size_t>(number / inGroup)].push_back(std::to_string(number / inFolder) + "/file " +
                                                                         std::to_string(number));
        clean_.load(groups);
        std::printf("%d files\n", files_);
        heading();
    }

    // Marks all but the first of each group.
    void wizard()
    {
        must(clean_.world.trigger("mark.wizard"), "the command");
        auto* const dialog = clean_.world.await<QDialog>("markWizard");
        must(dialog != nullptr, "the wizard");
        for (const auto& [name, title] : {std::pair("ruleNewest", "preview of \"keep the newest\""),
                                          {"ruleFirst", "preview of \"keep the first\""}}) {
            const Step step(clean_, title);
            auto* const effect = dialog->findChild<QLabel*>(QStringLiteral("wizardEffect"));
            effect->setText({});
            dialog->findChild<QRadioButton*>(QString::fromLatin1(name))->click();
            must(waitUntil([&] { return !effect->text().isEmpty(); }, patience), "the preview");
        }
        const Step step(clean_, "marking, and the pane");
        must(clean_.click("markWizard", "wizardApply"), "the button");
        must(waitUntil([&] { return figures().ticked.items > 0; }, patience), "ticks");
        clean_.world.onWindowThread([](Workbench&) {});
    }

    void cleanUp(const char* choice, const char* planning, const char* work)
    {
        must(clean_.world.trigger("clean.start"), "the command");
        must(clean_.world.await<QDialog>("cleanupChoice") != nullptr, "the choice");
        {
            const Step step(clean_, planning);
            must(clean_.click("cleanupChoice", choice), "the button");
            must(until("cleanupSummary"), "the page");
        }
        const Step step(clean_, work);
        must(clean_.click("cleanupSummary", "cleanupGo"), "the button");
        must(until("cleanupDone"), "the end");
        must(clean_.answer("cleanupDone", QMessageBox::Ok) && clean_.isOver(), "the end of the job");
    }

    void takeBack(const char* title)
    {
        must(clean_.world.trigger("clean.undo"), "the command");
        must(until("undoConfirm"), "the question");
        const Step step(clean_, title);
        must(clean_.answer("undoConfirm", QMessageBox::Yes), "the answer");
        must(until("undoTold"), "the end");
        must(clean_.answer("undoTold", QMessageBox::Ok) && clean_.isOver(), "the end of the job");
    }

    void deleteSelected()
    {
        const Step step(clean_, "direct deletion of the same");
        clean_.world.onWindowThread([](Workbench& bench) {
            std::vector<ItemId> ticked;
            bench.results().forEachRow([&](ItemId id) {
                if (bench.results().isMarked(id))
                    ticked.push_back(id);
            });
            bench.results().mark(ticked, Mark::selected, true);
        });
        const auto before = figures().rows;
        must(clean_.world.trigger("clean.deleteDirectly"), "the command");
        must(waitUntil([&] { return figures().rows < before; }, patience) && clean_.isOver(), "the end");
    }

    void look(const char* command, const char* dialog, const char* title)
    {
        const Step step(clean_, title);
        must(clean_.world.trigger(command), "the command");
        must(until(dialog), "the dialog");
        static_cast<void>(waitUntil([] { return false; }, std::chrono::milliseconds(500)));  // what it reads then
        must(clean_.escape(dialog), "its end");
    }

private:
    static void heading()
    {
        std::printf("%-44s %11s %11s %11s %11s\n", "", "whole", "main thread", "its work", "window's");
    }
    const ListFigures& figures() { return clean_.world.link().rows().figures(); }
    bool until(const char* dialog)
    {
        return waitUntil(
            [&] {
                const auto* const shown = clean_.world.find<QWidget>(dialog);
                return shown != nullptr && shown->isVisible();
            },
            patience);
    }

    const int files_;
    CleanWorld clean_;
};

void measure(int files, std::uint32_t rows)
{
    CleaningBench bench(files);
    bench.preview(rows);
    bench.load();
    bench.wizard();
    bench.cleanUp("choiceLinks", "plan of the links", "links");
    bench.look("clean.log", "cleanupLog", "their log opened");
    bench.look("clean.runs", "earlierRuns", "earlier runs opened");
    bench.takeBack("links taken back");
    bench.load();
    bench.wizard();
    bench.cleanUp("choiceDelete", "plan of the deletion", "moved to the trash");
    bench.takeBack("trash taken back");
    bench.load();
    bench.wizard();
    bench.deleteSelected();
}

}  // namespace
}  // namespace kelvane::bench

int main(int count, char** words)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, words);
    QApplication::setQuitOnLastWindowClosed(false);
    const int files = count > 1 ? std::atoi(words[1]) : 25'000;
    const int rows = count > 2 ? std::atoi(words[2]) : 1'000'000;
    kelvane::bench::measure(files, static_cast<std::uint32_t>(rows));
}
