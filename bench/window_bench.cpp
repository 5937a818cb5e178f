// How soon a window answers while it scans: window_bench [FILES]. Makes a tree of small files, a tenth of them copies,
// searches it through the scan pane on the offscreen platform, and tells the longest time that the main thread did not
// come to its events, how often the list grew meanwhile, and how long a cancel takes.
#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "heart.h"
#include "support/ui/scan_person.h"
#include "ui/scan/scan_reports.h"

namespace kelvane::testing {
namespace {

using bench::Heart;

constexpr int filesInFolder = 500;

void makeFiles(const TempTree& tree, int count)
{
    for (int number = 0; number < count; ++number) {
        const std::string folder = "files/" + std::to_string(number / filesInFolder) + '/';
        const int contents = number % 10 == 0 ? number / 100 : number;
        tree.write(folder + std::to_string(number), "contents of file number " + std::to_string(contents));
    }
}

// Milliseconds from the cancel to the end of the job; negative when the scan was over before.
qint64 cancelTime(DesktopWorld& world)
{
    QElapsedTimer since;
    auto* const reports = scanPane(world).findChild<ScanReports*>();
    QObject::connect(reports, &ScanReports::ticked, reports, [&](const ScanTick& tick) {
        if (!since.isValid() && tick.progress.items > 0) {
            since.start();
            world.link().cancelJob();
        }
    });
    scanPane(world).start();
    static_cast<void>(waitUntil([&] { return world.link().job() == Job::scanning; }));
    static_cast<void>(waitUntil([&] { return world.link().job() == Job::none; }, std::chrono::minutes(10)));
    return since.isValid() ? since.elapsed() : -1;
}

int measure(int count)
{
    DesktopWorld world({.files = [count](const TempTree& tree) { makeFiles(tree, count); }});
    dropFolder(world, "scan.folderList", world.tree.path("files"));
    scanPane(world).start();
    QElapsedTimer since;
    since.start();
    const Heart heart;
    int grown = 0;
    QObject::connect(&world.link(), &WindowLink::rowsPatched, [&] { grown += world.link().job() == Job::scanning; });
    static_cast<void>(waitUntil([&] { return world.link().job() == Job::scanning; }));
    static_cast<void>(waitUntil([&] { return world.link().job() == Job::none; }, std::chrono::minutes(10)));
    std::printf("%d files in %.1f s, %u rows in %d steps: longest gap of the main thread %lld ms, %d above %lld ms\n",
                count, static_cast<double>(since.elapsed()) / 1000, world.link().rows().count(), grown,
                static_cast<long long>(heart.longest()), heart.pauses(), static_cast<long long>(Heart::pauseMs));
    std::printf("a cancel ended the scan after %lld ms\n", static_cast<long long>(cancelTime(world)));
    return 0;
}

}  // namespace
}  // namespace kelvane::testing

int main(int count, char** words)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, words);
    QApplication::setQuitOnLastWindowClosed(false);
    return kelvane::testing::measure(count > 1 ? std::atoi(words[1]) : 100'000);
}
