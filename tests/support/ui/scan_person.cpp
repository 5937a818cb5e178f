#include "support/ui/scan_person.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <map>

#include "ui/core/text.h"

namespace kelvane::testing {

void dropFolder(const DesktopWorld& world, const char* widget, const std::filesystem::path& folder)
{
    dropFolders(world, widget, {folder});
}

void dropFolders(const DesktopWorld& world, const char* widget, const std::vector<std::filesystem::path>& folders)
{
    QMimeData dropped;
    QList<QUrl> urls;
    for (const std::filesystem::path& folder : folders) {
        const QByteArray path = QByteArray::fromStdString(folder.generic_string());
        urls.append(QUrl::fromEncoded("file://" + path.toPercentEncoding("/")));
    }
    dropped.setUrls(urls);
    QWidget* target = world.find<QWidget>(widget);
    if (target == nullptr)
        target = &world.window();
    QDragEnterEvent over(QPoint(5, 5), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &over);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
}

void click(const DesktopWorld& world, const char* button)
{
    world.find<QAbstractButton>(button)->click();
}

bool scanBy(DesktopWorld& world, const char* button)
{
    bool began = false, ended = false;
    auto* const reports = scanPane(world).findChild<ScanReports*>();
    const auto onBegin = QObject::connect(reports, &ScanReports::began, [&] { began = true; });
    const auto onEnd = QObject::connect(reports, &ScanReports::ended, [&](const ScanOutcome&) { ended = true; });
    click(world, button);
    static_cast<void>(waitUntil([&] { return ended && world.link().job() == Job::none; }));
    QObject::disconnect(onBegin);
    QObject::disconnect(onEnd);
    return began && ended;
}

NamedGroups listedGroups(DesktopWorld& world)
{
    return world.ask<NamedGroups>([](Workbench& bench) {
        std::map<std::uint32_t, std::set<std::string>> byNumber;
        bench.results().forEachItem([&](ItemId id) {
            const ResultItem& item = bench.results().item(id);
            byNumber[item.groupNumber()].insert(item.file.item().path().filename().string());
        });
        NamedGroups groups;
        for (const auto& [number, names] : byNumber)
            groups.insert(names);
        return groups;
    });
}

}  // namespace kelvane::testing
