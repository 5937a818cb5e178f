#include "ui/scan/kept_scans_menu.h"

#include <QDateTime>
#include <QLocale>
#include <QMenu>
#include <QWidget>

#include "base/desktop_texts/scan.h"
#include "platform/native_text.h"
#include "ui/core/desktop.h"
#include "ui/core/text.h"
#include "ui/scan/name_question.h"

namespace kelvane {
namespace {

constexpr int mostCharacters = 60;                               // of folders in a menu
constexpr std::int64_t millisecondsTo1970 = 11'644'473'600'000;  // from 1601, where file times begin

QString problemText(KeptScanResult result)
{
    switch (result) {
    case KeptScanResult::done:
        return {};
    case KeptScanResult::noName:
        return shown(desktop_text::savedNoName);
    case KeptScanResult::nameTaken:
        return shown(desktop_text::savedNameTaken);
    case KeptScanResult::notFound:
        return shown(desktop_text::savedNotFound);
    case KeptScanResult::tooLong:
        break;
    }
    return shown(desktop_text::savedTooLong);
}

// A name is no place for the mark of a key.
QString menuText(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

QString timeText(FileTime time)
{
    const auto milliseconds = time.ticks / ticksPerMillisecond - millisecondsTo1970;
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(milliseconds), QLocale::ShortFormat);
}

QString entryText(const KeptScan& scan)
{
    QString folders = toQt(displayFromNative(nativeFromBytes(scan.definition.roots)));
    if (folders.size() > mostCharacters)
        folders = QStringLiteral("...") + folders.right(mostCharacters);
    const QString text = shown(desktop_text::historyEntry, {timeText(scan.when).toStdString(), folders.toStdString()});
    return scan.stale ? shown(desktop_text::historyStale, {text.toStdString()}) : text;
}

ScanOrder orderOf(const KeptScan& scan, const Desktop& desktop)
{
    ScanOrder order;
    order.definition = scan.definition;
    order.archives = (desktop.settings().flags & option_flag::enterVirtualFolders) != 0;
    return order;
}

}  // namespace

KeptScansMenu::KeptScansMenu(const Desktop& desktop, QMenu& savedScans, QMenu& history, QWidget& over)
    : QObject(&over), desktop_(desktop), over_(over)
{
    connect(&savedScans, &QMenu::aboutToShow, this, [this, &savedScans] { fillSaved(savedScans); });
    connect(&history, &QMenu::aboutToShow, this, [this, &history] { fillHistory(history); });
}

void KeptScansMenu::saveAs(const ScanOrder& order)
{
    const QString name = order.definition.name() == CScanNode().name() ? QString() : toQt(order.definition.name());
    askName(over_, {shown(desktop_text::savedScansMenu).remove(u'&'), shown(desktop_text::savedNameLabel), name,
                    [this, definition = order.definition](const QString& typed) mutable {
                        definition.setName(fromQt(typed));
                        KeptScanResult result = KeptScanResult::done;
                        desktop_.change([&](Settings& settings) {
                            result = addSavedScan(settings, definition, desktop_.platform().folding());
                        });
                        if (result == KeptScanResult::done)
                            Q_EMIT saved(typed.trimmed());
                        return problemText(result);
                    }});
}

void KeptScansMenu::fillSaved(QMenu& menu)
{
    menu.clear();
    const Settings settings = desktop_.settings();
    for (const KeptScan& scan : settings.savedScans)
        addSaved(*menu.addMenu(menuText(toQt(scan.definition.name()))), scan);
    if (settings.savedScans.empty())
        menu.addAction(shown(desktop_text::setsNone))->setEnabled(false);
}

void KeptScansMenu::addSaved(QMenu& menu, const KeptScan& scan)
{
    const ScanOrder order = orderOf(scan, desktop_);
    const std::u16string name = scan.definition.name();
    connect(menu.addAction(shown(desktop_text::savedRun)), &QAction::triggered, this,
            [this, order] { Q_EMIT runWanted(order); });
    connect(menu.addAction(shown(desktop_text::savedOpen)), &QAction::triggered, this,
            [this, order] { Q_EMIT opened(order); });
    connect(menu.addAction(shown(desktop_text::savedRename)), &QAction::triggered, this,
            [this, name] { rename(name); });
    connect(menu.addAction(shown(desktop_text::savedDelete)), &QAction::triggered, this, [this, name] {
        desktop_.change([&](Settings& settings) {
            static_cast<void>(removeSavedScan(settings, name, desktop_.platform().folding()));
        });
    });
}

void KeptScansMenu::rename(const std::u16string& name)
{
    askName(over_, {shown(desktop_text::savedScansMenu).remove(u'&'), shown(desktop_text::savedNameLabel), toQt(name),
                    [this, name](const QString& typed) {
                        KeptScanResult result = KeptScanResult::done;
                        desktop_.change([&](Settings& settings) {
                            result = renameSavedScan(settings, name, fromQt(typed), desktop_.platform().folding());
                        });
                        return problemText(result);
                    }});
}

void KeptScansMenu::fillHistory(QMenu& menu)
{
    menu.clear();
    const Settings settings = desktop_.settings();
    for (const KeptScan& scan : settings.scanHistory)
        connect(menu.addAction(menuText(entryText(scan))), &QAction::triggered, this,
                [this, order = orderOf(scan, desktop_)] { Q_EMIT opened(order); });
    if (settings.scanHistory.empty())
        menu.addAction(shown(desktop_text::setsNone))->setEnabled(false);
    menu.addSeparator();
    QAction* const clear = menu.addAction(shown(desktop_text::historyClear));
    clear->setEnabled(!settings.scanHistory.empty());
    connect(clear, &QAction::triggered, this, [this] { desktop_.change(clearHistory); });
}

}  // namespace kelvane
