#include "ui/scan/scan_pane.h"

#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/core/wrapped_label.h"
#include "ui/frame/theme.h"
#include "ui/scan/beginner_page.h"
#include "ui/scan/progress_panel.h"
#include "ui/scan/scan_boxes.h"
#include "ui/scan/scan_form.h"
#include "ui/scan/scan_modes.h"
#include "ui/scan/scan_runner.h"

namespace kelvane {
namespace {

constexpr int checkDelayMs = 300;  // after the last edit

QString groupsText(std::uint32_t groups)
{
    return groups == 1 ? shown(TextId::oneGroup) : shown(TextId::manyGroups, {std::to_string(groups)});
}

}  // namespace

ScanPane::ScanPane(WindowLink& link, QWidget* parent)
    : QWidget(parent),
      link_(link),
      reports_(new ScanReports(this)),
      form_(new ScanForm(link)),
      express_(new BeginnerPage(link.desktop())),
      pages_(new QStackedWidget),
      progress_(new ProgressPanel),
      notRead_(new WrappedLabel("scan.notRead")),
      find_(new QPushButton(shown(desktop_text::scanFind))),
      pause_(std::make_shared<PauseSwitch>())
{
    setObjectName(QStringLiteral("scan.pane"));
    makeLayout();
    checkSoon_.setSingleShot(true);
    checkSoon_.setInterval(checkDelayMs);
    listen();
    listenToScan();
    const Settings settings = link_.desktop().settings();
    const QByteArray leftOut = link_.desktop().memory.value(leftOutMemory);  // before the form says otherwise
    showOrder(lastOrder(settings));
    form_->recallLeftOut(leftOut);
    setMode(interfaceModeOf(settings));
    link_.fetch(this, propertyRows, [this](std::vector<PropertyRow> rows) { form_->setProperties(std::move(rows)); });
}

void ScanPane::makeLayout()
{
    find_->setObjectName(QStringLiteral("scan.find"));
    progress_->hide();
    notRead_->hide();
    makeWarning(*notRead_);
    pages_->addWidget(form_);
    pages_->addWidget(express_);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(progress_);
    layout->addWidget(pages_, 1);
    auto* const foot = new QVBoxLayout;
    foot->setContentsMargins(9, 0, 9, 9);
    foot->addWidget(notRead_);
    foot->addWidget(find_);
    layout->addLayout(foot);
}

void ScanPane::listen()
{
    connect(find_, &QPushButton::clicked, this, &ScanPane::start);
    connect(express_, &BeginnerPage::findWanted, this, &ScanPane::start);
    connect(form_, &ScanForm::edited, &checkSoon_, qOverload<>(&QTimer::start));
    connect(&checkSoon_, &QTimer::timeout, this, &ScanPane::check);
    connect(progress_, &ProgressPanel::pauseWanted, this, &ScanPane::pause);
    connect(progress_, &ProgressPanel::cancelWanted, this, [this] { link_.cancelJob(); });
}

void ScanPane::listenToScan()
{
    connect(reports_, &ScanReports::began, this, [this] { latest_ = wanted_; });
    connect(reports_, &ScanReports::captioned, progress_, &ProgressPanel::setCaption);
    connect(reports_, &ScanReports::ticked, progress_, &ProgressPanel::show);
    connect(reports_, &ScanReports::noticed, this,
            [this](const QString& text) { notice_ = showScanNotice(*this, link_.desktop(), text); });
    connect(reports_, &ScanReports::logged, this, [this](const QStringList& lines) {
        for (const QString& line : lines)
            Q_EMIT link_.logged(line);
    });
    connect(reports_, &ScanReports::ended, this, &ScanPane::scanEnded);
    connect(&link_, &WindowLink::jobChanged, this, &ScanPane::followJob);
    connect(&link_, &WindowLink::optionsChanged, this,
            [this] { setMode(interfaceModeOf(link_.desktop().settings())); });
    connect(&link_, &WindowLink::figuresChanged, this, [this] { progress_->setGroups(link_.rows().figures().groups); });
}

void ScanPane::setMode(InterfaceMode mode)
{
    if (mode_ == InterfaceMode::beginner && mode != mode_ && express_->hasOwnFolders()) {
        ScanOrder order = form_->order();
        order.definition.roots = express_->order().definition.roots;
        showOrder(order);
    }
    mode_ = mode;
    const bool beginner = mode == InterfaceMode::beginner;
    form_->setMode(mode);
    pages_->setCurrentWidget(beginner ? static_cast<QWidget*>(express_) : form_);
    find_->setVisible(!beginner);
}

ScanOrder ScanPane::order() const
{
    return mode_ == InterfaceMode::beginner ? express_->order() : form_->order();
}

void ScanPane::showOrder(const ScanOrder& order)
{
    form_->show(order);
}

void ScanPane::clear()
{
    showOrder(lastOrder({}));
}

void ScanPane::startAgain()
{
    const Settings settings = link_.desktop().settings();
    if (latest_)
        return run(allowedOrder(*latest_, mode_));
    run(settings.lastScan ? allowedOrder(lastOrder(settings), mode_) : order());
}

void ScanPane::run(const ScanOrder& order)
{
    const std::uint64_t marked = link_.rows().figures().ticked.items;
    if (marked == 0)
        return begin(order);
    askToForgetMarks(link_, marked, [this, order] { begin(order); });
}

void ScanPane::begin(const ScanOrder& order)
{
    pause(false);
    wanted_ = order;
    link_.run([order, reports = QPointer<ScanReports>(reports_), pause = pause_](Workbench& bench) {
        runOrderedScan(bench, order, reports, pause);
    });
}

void ScanPane::pause(bool on)
{
    pause_->set(on);
    progress_->setPaused(on);
    Q_EMIT paused(on);
}

void ScanPane::check()
{
    link_.fetch(
        this,
        [order = form_->order(), unticked = form_->unticked()](Workbench& bench) {
            return checkOrder(bench, order, unticked);
        },
        [this](const OrderCheck& check) { form_->showCheck(check); });
}

void ScanPane::followJob(Job job)
{
    progress_->setVisible(job == Job::scanning);
    find_->setEnabled(job == Job::none);
    express_->setEnabled(job == Job::none);
    if (job == Job::scanning)
        progress_->begin();
    if (job == Job::scanning || job == Job::loading)
        notRead_->hide();  // what it says is about the scan before
}

void ScanPane::scanEnded(const ScanOutcome& outcome)
{
    if (notice_ != nullptr)
        notice_->activateWindow();  // nothing but its own Enter and Escape is left to be pressed
    if (outcome.refused)
        return showProblem(outcome.problem);
    showProblem({});
    notRead_->setText(shown(desktop_text::scanNotRead, {outcome.notRead.toStdString()}));
    notRead_->setVisible(!outcome.notRead.isEmpty());
    if (outcome.rows > 0 && isAncestorOf(window()->focusWidget()))
        Q_EMIT found();
    if (outcome.cancelled)
        Q_EMIT link_.statusTold(shown(desktop_text::scanCancelled, {groupsText(outcome.groups).toStdString()}));
    else if (outcome.rows == 0 && !outcome.trivial)
        askToRevise(link_, notice_, [this] {
            window()->activateWindow();
            pages_->currentWidget()->setFocus();
        });
}

void ScanPane::showProblem(const QString& problem)
{
    express_->showProblem(problem);
    if (problem.isEmpty())
        return;
    check();  // beside the control that it comes from
    Q_EMIT link_.statusTold(problem);
}

}  // namespace kelvane
