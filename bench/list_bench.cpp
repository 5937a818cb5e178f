// How long the results view keeps the main thread: list_bench [ROWS].
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "app/engine_settings.h"
#include "made_up_files.h"
#include "results/result_sort.h"
#include "support/ui/desktop_world.h"
#include "ui/list/results_view.h"

namespace kelvane::bench {
namespace {

using testing::DesktopWorld;

// Runs the loop of events until the condition holds. What one turn of it takes is a pause that a person may notice.
class Pauses {
public:
    void measure(const char* name, const std::function<void()>& start, const std::function<bool()>& over)
    {
        longest_ = 0;
        QElapsedTimer whole;
        whole.start();
        turn(start);
        while (!over())
            turn([] { QCoreApplication::processEvents(QEventLoop::AllEvents, 1); });
        std::printf("%-34s %9lld ms %14.1f ms\n", name, static_cast<long long>(whole.elapsed()), longest_);
        std::fflush(stdout);
    }

private:
    void turn(const std::function<void()>& work)
    {
        QElapsedTimer timer;
        timer.start();
        work();
        longest_ = std::max(longest_, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }

    double longest_ = 0;
};

class ListBench {
public:
    explicit ListBench(std::uint32_t rows) : rows_(rows), view_(*world_.find<ResultsView>("resultsView"))
    {
        world_.window().resize(1400, 900);
        std::printf("%u rows\n%-34s %12s %17s\n", rows, "step", "until shown", "longest pause");
    }

    void run()
    {
        open("rows that come a thousand a time", 1'000);
        open("open", rows_);
        sort("sort by name, groups kept", "System.FileName", GroupedOrder::yes);
        sort("sort by size, groups torn apart", "System.Size", GroupedOrder::no);
        sort("back to groups", "", GroupedOrder::yes);
        filter("filter by \"img\"", u"img");
        filter("no filter", u"");
        everyRow(
            "select all", [this] { view_.selectAll(); }, Mark::selected);
        everyRow(
            "tick all", [this] { view_.toggleTicks(); }, Mark::ticked);
        scroll();
    }

private:
    // The work is done on the window's thread; what counts is the main one.
    void step(const char* name, std::function<void(Workbench&)> work)
    {
        auto done = std::make_shared<bool>(false);
        pauses_.measure(
            name,
            [&] {
                world_.link().run([work = std::move(work), done](Workbench& bench) {
                    work(bench);
                    bench.toMain([done](WindowLink&) { *done = true; });
                });
            },
            [&] { return *done && textsAreThere(); });
    }

    // A scan tells of its groups as they come, a file of saved results is there at once.
    void open(const char* name, std::uint32_t atATime)
    {
        step(name, [rows = rows_, atATime](Workbench& bench) {
            const Settings settings = bench.desktop().settings();
            bench.beginList(settings, engineOptionsFrom(settings));
            MadeUpFiles(1).make(rows, [&](Ref<const ShellItem> file, std::uint32_t group) {
                bench.results().add(std::move(file), group, false);
                if (bench.results().itemCount() % atATime == 0)
                    bench.serve();
            });
        });
    }

    void sort(const char* name, const char* property, GroupedOrder grouped)
    {
        step(name, [property, grouped](Workbench& bench) {
            std::vector<SortKey> keys;
            if (const PropRef by = bench.session()->access.catalogue.byName(property))
                keys.push_back({by, true});
            const CancelFlag never;
            if (!sortResults(bench.results(), keys, grouped, bench.session()->access.source, never))
                std::abort();
        });
    }

    void filter(const char* name, const std::u16string& text)
    {
        step(name, [text](Workbench& bench) {
            bench.filter()->searchIn({bench.session()->access.catalogue.byName("System.FileName")});
            static_cast<void>(bench.filter()->apply(text));
        });
    }

    void everyRow(const char* name, const std::function<void()>& start, Mark mark)
    {
        pauses_.measure(name, start, [&] {
            const ListFigures& figures = world_.link().rows().figures();
            return (mark == Mark::ticked ? figures.ticked : figures.selected).items == figures.rows;
        });
    }

    void scroll()
    {
        QScrollBar& bar = *view_.verticalScrollBar();
        bar.setValue(0);
        int pages = 0;
        pauses_.measure(
            "2,000 pages down, each drawn", [] {},
            [&] {
                bar.setValue(bar.value() + bar.pageStep());
                view_.viewport()->repaint();
                return ++pages == 2'000;
            });
        bar.setValue(bar.maximum());
        pauses_.measure(
            "to the end, until texts are there", [] {}, [this] { return textsAreThere(); });
    }

    [[nodiscard]] bool textsAreThere() const
    {
        const auto row = view_.rowAt(QPoint(10, view_.viewport()->height() / 2));
        return view_.layoutOfRows().rowCount() == 0 || !row ||
               view_.cells().find(world_.link().rows().at(*row).item) != nullptr;
    }

    std::uint32_t rows_;
    DesktopWorld world_;
    ResultsView& view_;
    Pauses pauses_;
};

}  // namespace
}  // namespace kelvane::bench

int main(int count, char** words)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, words);
    QApplication::setQuitOnLastWindowClosed(false);
    kelvane::bench::ListBench(count > 1 ? static_cast<std::uint32_t>(std::atol(words[1])) : 1'000'000u).run();
}
