#include "ui/scan/scan_watcher.h"

#include <QApplication>
#include <chrono>
#include <thread>
#include <utility>

#include "app/error_text.h"
#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr std::chrono::milliseconds pausedStep{10};
constexpr std::uint64_t mostShown = 3;
constexpr std::uint64_t mostListed = 10'000;  // a log that nobody reads to its end

QString lineOf(const SkippedItem& item)
{
    return toQt(item.path) + QStringLiteral(": ") + toQt(errorText(item.error));
}

}  // namespace

ScanWatcher::ScanWatcher(Workbench& bench, QPointer<ScanReports> reports, const PauseSwitch& pause)
    : bench_(bench), reports_(std::move(reports)), pause_(pause)
{
}

void ScanWatcher::caption(std::u16string_view text)
{
    bench_.toMain([reports = reports_, caption = toQt(text)](WindowLink&) {
        if (reports)
            Q_EMIT reports->captioned(caption);
    });
}

void ScanWatcher::progress(const ScanProgress& progress)
{
    bench_.toMain([reports = reports_, tick = ScanTick{progress, phaseTime(progress.phase)}](WindowLink&) {
        if (reports)
            Q_EMIT reports->ticked(tick);
    });
    flush();
    bench_.serve();
    waitWhilePaused();
}

void ScanWatcher::notice(std::u16string_view text)
{
    bench_.toMain([reports = reports_, notice = toQt(text)](WindowLink&) {
        if (reports)
            Q_EMIT reports->noticed(notice);
    });
}

void ScanWatcher::skipped(const SkippedItem& item)
{
    const std::lock_guard lock(mutex_);
    const QString line = lineOf(item);
    list(line);
    if (++skipped_ <= mostShown)
        first_.append(line);
}

void ScanWatcher::undescribed(const SkippedItem& item)
{
    const std::lock_guard lock(mutex_);
    list(lineOf(item));
}

void ScanWatcher::list(const QString& line)
{
    if (++listed_ <= mostListed)
        lines_.append(line);
}

QStringList ScanWatcher::firstSkipped() const
{
    const std::lock_guard lock(mutex_);
    QStringList lines = first_;
    if (skipped_ > mostShown)
        lines.append(shown(desktop_text::scanNotReadMore, {std::to_string(skipped_ - mostShown)}));
    return lines;
}

void ScanWatcher::sound(Sound)
{
    postToMain([] { QApplication::beep(); });
}

void ScanWatcher::flush()
{
    QStringList lines;
    {
        const std::lock_guard lock(mutex_);
        lines.swap(lines_);
    }
    if (lines.isEmpty())
        return;
    bench_.toMain([reports = reports_, lines = std::move(lines)](WindowLink&) {
        if (reports)
            Q_EMIT reports->logged(lines);
    });
}

void ScanWatcher::waitWhilePaused()
{
    const std::uint64_t began = bench_.platform().clock().ticks();
    while (pause_.isOn() && !bench_.cancel().cancelled()) {
        std::this_thread::sleep_for(pausedStep);
        bench_.serve();
    }
    phaseBegan_ += bench_.platform().clock().ticks() - began;
}

std::uint64_t ScanWatcher::phaseTime(ScanPhase phase)
{
    const std::uint64_t now = bench_.platform().clock().ticks();
    if (phase_ != phase) {
        phase_ = phase;
        phaseBegan_ = now;
    }
    return now - phaseBegan_;
}

}  // namespace kelvane
