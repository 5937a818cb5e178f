#include "ui/clean/cleanup_dialogs.h"

#include <QCheckBox>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <tuple>

#include "base/desktop_texts/clean.h"
#include "base/desktop_texts/frame.h"
#include "ui/clean/boxes.h"
#include "ui/clean/help.h"
#include "ui/clean/summary_dialog.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

using Button = QMessageBox::StandardButton;

// A window manager that still puts away the dialog before would give the keys to that one.
constexpr std::chrono::milliseconds afterOthers{100};

QString cleanupTitle()
{
    return shown(TextId::cleanupTitle);
}

TextId workOf(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::puttingLinks;
    return action == CleanupAction::recycle ? TextId::movingToTrash : TextId::deletingForGood;
}

// The text goes on a line of its own elsewhere.
QString asTitle(QString text)
{
    return text.isEmpty() ? text : text.replace(0, 1, text.front().toUpper());
}

std::vector<TrashlessLine> linesOf(std::span<const TrashlessVolume> volumes)
{
    std::vector<TrashlessLine> lines;
    for (const TrashlessVolume& volume : volumes)
        lines.push_back({pathShown(volume.place), toQt(volume.reason), volume.items, volume.bytes});
    return lines;
}

// A box with a tick for not being asked or told again.
struct Notice {
    bool yes = false;
    bool never = false;
};

Notice askNotice(Workbench& bench, const BoxSpec& spec)
{
    return bench.ask<Notice>({}, [spec](WindowLink& link, auto hold) {
        auto* const tick = new QCheckBox(shown(desktop_text::doNotShowAgain));
        tick->setObjectName(QStringLiteral("doNotShowAgain"));
        QMessageBox* const box = openBox(link, spec, [hold, tick](Button button) {
            hold->give({button == QMessageBox::Yes || button == QMessageBox::Ok, tick->isChecked()});
        });
        box->setCheckBox(tick);
    });
}

}  // namespace

bool CleanupDialogs::includeHidden(std::u16string_view question)
{
    return askYesNo(bench_, "cleanupHidden", cleanupTitle(), toQt(question));
}

void CleanupDialogs::warn(std::u16string_view text)
{
    static_cast<void>(
        askBox(bench_, {"cleanupWarning", QMessageBox::Warning, cleanupTitle(), toQt(text)}, QMessageBox::Ok));
}

CleanupChoice CleanupDialogs::choose(bool linksOffered)
{
    way_ = bench_.ask<CleanupWay>({}, [linksOffered](WindowLink& link, auto hold) {
        auto* const dialog = new ChoiceDialog(
            topOf(link), linksOffered, [&link] { openCleanupHelp(link); }, [hold](CleanupWay way) { hold->give(way); });
        dialog->open();
    });
    return way_.choice;
}

Trashless CleanupDialogs::withoutTrash(std::span<const TrashlessVolume> volumes)
{
    progress_.end();
    if (bench_.cancel().cancelled())
        return Trashless::stop;
    return bench_.ask<Trashless>(Trashless::stop, [lines = linesOf(volumes)](WindowLink& link, auto hold) {
        (new TrashlessDialog(topOf(link), lines, [hold](Trashless answer) { hold->give(answer); }))->open();
    });
}

bool CleanupDialogs::confirm(const CleanupSummary& summary)
{
    progress_.end();
    if (bench_.cancel().cancelled() || !askSummary(summary.html) || bench_.cancel().cancelled())
        return false;
    if (!marksStand(summary.plan)) {
        showStatus(text(desktop_text::marksChanged));
        return false;
    }
    confirmed_ = true;
    beginProgress(summary.plan);
    return true;
}

bool CleanupDialogs::askSummary(const std::string& html)
{
    return bench_.ask<bool>(false, [html](WindowLink& link, auto hold) {
        auto* const dialog = new SummaryDialog(
            topOf(link), html, [&link] { openCleanupHelp(link); }, [hold](bool yes) { hold->give(yes); });
        QTimer::singleShot(afterOthers, dialog, &QDialog::open);
    });
}

// Work that was posted before the page stood over the list may have been done since the plan was made.
bool CleanupDialogs::marksStand(const CleanupPlan& plan)
{
    const ResultsModel& results = bench_.results();
    const auto isAsPlanned = [&](ItemId id, std::uint32_t group, bool marked) {
        return results.rowOf(id) && results.isMarked(id) == marked && results.item(id).groupNumber() == group;
    };
    return std::all_of(plan.commands.begin(), plan.commands.end(), [&](const CleanupCommand& command) {
        return isAsPlanned(command.item, command.group, true) && isAsPlanned(command.kept, command.group, false);
    });
}

// Links take as long as their contents, which are compared first; a removal takes the same for a file of any size.
void CleanupDialogs::beginProgress(const CleanupPlan& plan)
{
    bytesCount_ = plan.action == CleanupAction::link;
    std::uint64_t bytes = 0;
    planned_.clear();
    for (const CleanupCommand& command : plan.commands) {
        planned_.push_back({command.item, bytesCount_ ? command.bytes : 0});
        bytes += planned_.back().bytes;
    }
    progress_.begin(asTitle(shown(workOf(plan.action))), planned_.size(), bytes);
}

void CleanupDialogs::expect(std::uint64_t items)
{
    progress_.expect(asTitle(shown(TextId::movingToTrash)), items);
}

template <class Answer, class... Items>
std::function<Answer(Items...)> CleanupDialogs::watched(std::function<Answer(Items...)> ask)
{
    return [this, ask = std::move(ask)](Items... items) {
        if (bench_.cancel().cancelled())
            return Answer{};
        progress_.look([&] { return pathShown(std::get<0>(std::tie(items...)).path()); });
        return ask(items...);
    };
}

void CleanupDialogs::watchLooks(CleanupFacts& facts)
{
    progress_.expect(shown(desktop_text::planProgress), 0);
    facts.onNetwork = watched(std::move(facts.onNetwork));
    facts.linkCount = watched(std::move(facts.linkCount));
    facts.canClone = watched(std::move(facts.canClone));
    facts.sharedBytes = watched(std::move(facts.sharedBytes));
    facts.metadataLoss = watched(std::move(facts.metadataLoss));
}

ExternalLink CleanupDialogs::linkToExternal(std::u16string_view question)
{
    const Button answer = askBox(bench_,
                                 {"cleanupExternal", QMessageBox::Warning, cleanupTitle(), toQt(question),
                                  QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No},
                                 QMessageBox::Cancel);
    if (answer == QMessageBox::Yes)
        return ExternalLink::yes;
    return answer == QMessageBox::No ? ExternalLink::no : ExternalLink::cancel;
}

ElevationAnswer CleanupDialogs::startElevated(std::u16string_view question)
{
    const Notice answer = askNotice(bench_, {"cleanupElevation", QMessageBox::Question, cleanupTitle(), toQt(question),
                                             QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel});
    return {answer.yes, answer.never};
}

bool CleanupDialogs::quitAfterProblem(std::u16string_view question)
{
    const BoxSpec spec{
        "cleanupProblem", QMessageBox::Critical, cleanupTitle(), toQt(question), QMessageBox::Yes | QMessageBox::No,
        QMessageBox::Yes, QMessageBox::Yes};
    return askBox(bench_, spec, QMessageBox::Yes) != QMessageBox::No;
}

bool CleanupDialogs::confirmStop(std::u16string_view question)
{
    const BoxSpec spec{
        "cleanupStop",    QMessageBox::Question, cleanupTitle(), toQt(question), QMessageBox::Yes | QMessageBox::No,
        QMessageBox::Yes, QMessageBox::Yes};
    bench_.cancel().reset();  // ahead, so that a wish to stop that follows the answer at once is not lost
    const bool stops = bench_.stopIsAgreed() || askBox(bench_, spec, QMessageBox::Yes) == QMessageBox::Yes;
    if (stops)
        bench_.cancel().cancel();
    return stops;
}

void CleanupDialogs::showStatus(std::u16string_view text)
{
    bench_.tell(text);
}

bool CleanupDialogs::notify(std::u16string_view text)
{
    endProgress();
    return askNotice(bench_, {"cleanupDone", QMessageBox::Information, cleanupTitle(), toQt(text).trimmed()}).never;
}

QString CleanupDialogs::nameOf(std::size_t command) const
{
    return command < planned_.size() ? pathShown(bench_.results().item(planned_[command].item).file.item().path())
                                     : QString();
}

void CleanupDialogs::itemBegins(std::size_t command)
{
    current_ = command;
    for (; begun_ < command; ++begun_)
        bytesBegun_ += planned_.at(begun_).bytes;
    progress_.item(ended_, bytesBegun_, [this] { return nameOf(current_); });
}

void CleanupDialogs::itemEnded(const ItemOutcome& outcome)
{
    current_ = outcome.command;
}

void CleanupDialogs::progress(std::uint64_t items, std::uint64_t bytes)
{
    ended_ = items;
    progress_.item(items, bytesCount_ ? std::max(bytes, bytesBegun_) : 0, [this] { return nameOf(current_); });
}

}  // namespace kelvane
