// Times what is done with a long list of results: results_bench [ROWS].
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include "engine/results_file.h"
#include "made_up_files.h"
#include "platform/file_namespace.h"
#include "platform/platform.h"
#include "props/property_source.h"
#include "results/quick_filter.h"
#include "results/result_sort.h"
#include "results/results_model.h"

namespace kelvane::bench {
namespace {

// In bytes, as Linux tells it; 0 elsewhere.
std::uint64_t memory(const std::string& which)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(which + ":"))
            return std::strtoull(line.c_str() + which.size() + 1, nullptr, 10) * 1024;
    }
    return 0;
}

class Bench {
public:
    explicit Bench(std::uint32_t rows) : rows_(rows)
    {
        std::printf("%u rows\n%-44s %10s %10s %12s %12s\n", rows, "step", "time", "processor", "bytes a row", "peak");
    }

    // Bytes a row: what the program takes beyond what it took without a list, after the step and at its worst. Where
    // the processor's time is much below the other one, the machine was busy with something else.
    template <class Work>
    void step(const char* name, Work work)
    {
        std::ofstream("/proc/self/clear_refs") << "5";  // starts the peak anew
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t ticks = std::clock();
        work();
        const double processor = 1'000.0 * static_cast<double>(std::clock() - ticks) / CLOCKS_PER_SEC;
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        std::printf("%-44s %7.1f ms %7.1f ms %12.0f %12.0f\n", name, time.count(), processor, perRow("VmRSS"),
                    perRow("VmHWM"));
        std::fflush(stdout);
    }

private:
    [[nodiscard]] double perRow(const char* which) const
    {
        return (static_cast<double>(memory(which)) - static_cast<double>(before_)) / rows_;
    }

    std::uint32_t rows_;
    std::uint64_t before_ = memory("VmRSS");
};

struct List {
    std::unique_ptr<Platform> platform = makePlatform();
    MadeUpFileSystem files{platform->files()};
    PropertyCatalogue catalogue{platform->properties()};
    std::unique_ptr<ShellNamespace> shell = makeFileNamespace(files, nullptr, platform->folding());
    PropertySource properties{catalogue, *shell, platform->readers(), platform->folding(), {}};
    CancelFlag cancel;
    ResultsModel model;

    [[nodiscard]] std::vector<ItemId> everyNth(std::uint32_t n) const
    {
        std::vector<ItemId> items;
        for (Row row = 0; row < model.rowCount(); row += n)
            items.push_back(model.itemAt(row));
        return items;
    }
};

void require(bool worked, const char* what)
{
    if (!worked) {
        std::fprintf(stderr, "results_bench: %s failed\n", what);
        std::exit(1);
    }
}

void sortSteps(Bench& bench, List& list)
{
    const auto by = [&](const char* step, std::string_view property, GroupedOrder grouped) {
        bench.step(step, [&] {
            const std::vector<SortKey> keys{{list.catalogue.byName(property), true}};
            require(sortResults(list.model, keys, grouped, list.properties, list.cancel), "sorting");
        });
    };
    by("sort by path, groups kept", "System.ItemPathDisplay", GroupedOrder::yes);
    by("sort by path", "System.ItemPathDisplay", GroupedOrder::no);
    by("sort by name", "System.ItemNameDisplay", GroupedOrder::no);
    by("sort by size", "System.Size", GroupedOrder::no);
    by("sort by size, groups kept", "System.Size", GroupedOrder::yes);
    bench.step("sort by group number", [&] {
        require(sortResults(list.model, {}, GroupedOrder::yes, list.properties, list.cancel), "sorting");
    });
}

void filterSteps(Bench& bench, List& list)
{
    QuickFilter filter(list.model, list.properties);
    const auto type = [&](const std::string& step, std::u16string_view text) {
        bench.step(step.c_str(), [&] { filter.apply(text); });
        std::printf("%-44s %10u\n", "  rows in view", list.model.rowCount());
    };
    filter.searchIn({list.catalogue.byName("System.ItemPathDisplay")});
    type("filter by path: i, texts made", u"i");
    type("filter: im", u"im");
    type("filter: img", u"img");
    type("filter: x7, all shown first", u"x7");
    type("filter: nothing typed any more", u"");
    type("filter: z", u"z");
    type("filter: h, all shown first", u"h");
    type("filter: ho", u"ho");
    type("filter: hol", u"hol");
    filter.showAll();
    filter.searchIn({list.catalogue.byName("System.ItemNameDisplay"),
                     list.catalogue.byName("System.ItemFolderPathDisplay"), list.catalogue.byName("System.Size"),
                     list.catalogue.byName("System.DateModified")});
    type("filter by four columns: 2, texts made", u"2");
    type("filter by four columns: 20", u"20");
    type("filter by four columns: 201", u"201");
    bench.step("show all", [&] { filter.showAll(); });
}

void markSteps(Bench& bench, List& list)
{
    ResultsModel& model = list.model;
    bench.step("invert ticks", [&] { model.invertTicks(); });
    bench.step("clear ticks", [&] { model.clearTicks(); });
    model.mark(list.everyNth(1'000), Mark::selected, true);
    bench.step("put every 1000th row into one group", [&] { require(model.regroupSelection(), "regrouping"); });
    bench.step("undo that", [&] { model.undo(); });
    model.clearSelection();
    const std::vector<ItemId> tenth = list.everyNth(10);
    bench.step("remove every 10th row", [&] { (void)model.remove(tenth); });
    bench.step("undo that", [&] { model.undo(); });
}

// Paths of usual length would fill a file of the largest size before there are a million of them.
void fileSteps(Bench& bench, List& list, MadeUpFiles& files, std::uint32_t rows)
{
    const auto path = std::filesystem::temp_directory_path() / "kelvane results_bench.ikvs";
    StoredResults results;
    results.columns = {list.catalogue.byName("System.ItemPathDisplay"), list.catalogue.byName("System.Size")};
    bench.step("make files of short names", [&] {
        files.makeShortNamed(rows, [&](Ref<const ShellItem> file, std::uint32_t group) {
            results.rows.push_back({std::move(file), group, false});
        });
    });
    bench.step("save these", [&] {
        const auto written = saveResults(path, results, list.platform->output());
        require(bool(written), written ? "" : written.error().detail.c_str());
    });
    results.rows.clear();
    bench.step("load them", [&] {
        const auto loaded = loadResults(path, *list.shell, list.catalogue, list.cancel);
        require(loaded && loaded->results.rows.size() == rows, "loading");
    });
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

void run(std::uint32_t rows)
{
    List list;
    MadeUpFiles files(1);
    Bench bench(rows);
    bench.step("build, files included", [&] {
        files.make(rows, [&](Ref<const ShellItem> file, std::uint32_t group) {
            list.model.add(std::move(file), group, false);
        });
    });
    sortSteps(bench, list);
    filterSteps(bench, list);
    markSteps(bench, list);
    fileSteps(bench, list, files, rows);
}

}  // namespace
}  // namespace kelvane::bench

int main(int count, char** words)
{
    const unsigned long rows = count > 1 ? std::strtoul(words[1], nullptr, 10) : 1'000'000;
    if (rows == 0 || rows > 100'000'000) {
        std::fprintf(stderr, "usage: results_bench [ROWS]\n");
        return 2;
    }
    kelvane::bench::run(static_cast<std::uint32_t>(rows));
    return 0;
}
