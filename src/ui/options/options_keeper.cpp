#include "ui/options/options_keeper.h"

#include "app/default_settings.h"
#include "app/settings_exchange.h"
#include "app/settings_table.h"
#include "app/text_lists.h"
#include "base/desktop_texts/options.h"
#include "base/utf.h"
#include "ui/core/local_path.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int quietMs = 400;  // a spin box that is held down is one change

struct Outcome {
    bool done = false;
    QString text;  // for the person; empty: there is nothing to say
};

QString withReason(TextId what, const QString& reason)
{
    return shown(what) + QStringLiteral("\n\n") + reason;
}

Outcome outcomeOf(const Result<TransferReport>& report, TextId what, const std::filesystem::path& file)
{
    if (!report)
        return {false, toQt(report.error().detail)};
    return {true, shown(what, {std::to_string(report->values), toUtf8(textOfPath(file))})};
}

}  // namespace

OptionsKeeper::OptionsKeeper(WindowLink& link, QObject* parent) : QObject(parent), link_(link)
{
    soon_.setSingleShot(true);
    soon_.setInterval(quietMs);
    connect(&soon_, &QTimer::timeout, this, &OptionsKeeper::save);
}

OptionsKeeper::~OptionsKeeper()
{
    saveWaiting();
}

void OptionsKeeper::saveWaiting()
{
    if (soon_.isActive())
        save();
}

Settings OptionsKeeper::defaults() const
{
    CXApplication& application = link_.desktop().application();
    const std::lock_guard lock(application.sharedState());
    return defaultSettings(application.context());
}

QString OptionsKeeper::place() const
{
    CXApplication& application = link_.desktop().application();
    const std::lock_guard lock(application.sharedState());
    const SettingsLocation& location = application.location();
    return toQt(location.isIni() ? textOfPath(location.iniPath) : location.keyPath);
}

void OptionsKeeper::change(const SettingRow* row, const SettingsChange& change)
{
    link_.desktop().change(change, row != nullptr && row->saved == SavedWhen::never ? row : nullptr);
    soon_.start();
    Q_EMIT changed();
    Q_EMIT link_.optionsChanged();
}

void OptionsKeeper::save()
{
    soon_.stop();
    link_.fetch(
        this, [](Workbench& bench) { return bench.desktop().saveSettings(); },
        [this](const std::u16string& failure) {
            if (!failure.empty())
                Q_EMIT failed(withReason(say::optionsNotSaved, toQt(failure)));
        });
}

// On the thread of the window, with the application locked; what it made of it is told here.
template <class Work>
void OptionsKeeper::carryOut(Work work)
{
    saveWaiting();
    link_.fetch(
        this,
        [work = std::move(work)](Workbench& bench) {
            CXApplication& application = bench.desktop().application();
            const std::lock_guard lock(application.sharedState());
            return work(application, bench.platform());
        },
        [this](const Outcome& outcome) { take(outcome.done, outcome.text); });
}

void OptionsKeeper::moveTo(PersistenceMode mode)
{
    carryOut([mode](CXApplication& application, Platform&) {
        const Status moved = application.switchTo(mode);
        return moved ? Outcome{true, {}} : Outcome{false, withReason(say::optionsNotMoved, toQt(moved.error().detail))};
    });
}

void OptionsKeeper::exportTo(const QString& file)
{
    carryOut([path = chosenPath(file)](CXApplication& application, Platform& platform) {
        return outcomeOf(exportSettingsTo(path, application, platform), say::optionsExported, path);
    });
}

void OptionsKeeper::importFrom(const QString& file)
{
    carryOut([path = chosenPath(file)](CXApplication& application, Platform& platform) {
        const auto report = importSettingsFrom(path, application, platform);
        if (report && report->values == 0)
            return Outcome{false, shown(say::optionsHoldsNothing, {toUtf8(textOfPath(path))})};
        return outcomeOf(report, say::optionsImported, path);
    });
}

void OptionsKeeper::take(bool done, const QString& text)
{
    Q_EMIT changed();
    Q_EMIT link_.optionsChanged();
    if (!done)
        Q_EMIT failed(text);
    else if (!text.isEmpty())
        Q_EMIT told(text);
}

}  // namespace kelvane
