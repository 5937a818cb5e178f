#include "ui/scan/scan_pane.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/scan/folder_list.h"
#include "ui/scan/progress_panel.h"
#include "ui/scan/scan_form.h"
#include "ui/scan/scan_runner.h"

namespace kelvane {
namespace {

constexpr int checkDelayMs = 300;  // after the last edit

// The definition last used; where there is none, that of the settings' category.
ScanOrder orderFrom(const Settings& settings)
{
    ScanOrder order;
    if (settings.lastScan) {
        order.definition = *settings.lastScan;
    } else {
        order.definition.flags = settings.lastScanFlags | scan_flag::contents;
        order.definition.setCategory(Category::custom);
        order.definition.set(scan_flag::ignoreSmall, false);
    }
    order.archives = (settings.flags & option_flag::enterVirtualFolders) != 0;
    return order;
}

}  // namespace

ScanPane::ScanPane(WindowLink& link, QWidget* parent)
    : QWidget(parent),
      link_(link),
      reports_(new ScanReports(this)),
      form_(new ScanForm(link)),
      progress_(new ProgressPanel),
      find_(new QPushButton(shown(desktop_text::scanFind))),
      pause_(std::make_shared<PauseSwitch>())
{
    setObjectName(QStringLiteral("scan.pane"));
    makeLayout();
    checkSoon_.setSingleShot(true);
    checkSoon_.setInterval(checkDelayMs);
    listen();
    showOrder(orderFrom(link_.desktop().settings()));
}

void ScanPane::makeLayout()
{
    find_->setObjectName(QStringLiteral("scan.find"));
    find_->setDefault(true);
    progress_->hide();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(progress_);
    layout->addWidget(form_, 1);
    layout->addWidget(find_);
}

void ScanPane::listen()
{
    connect(find_, &QPushButton::clicked, this, &ScanPane::start);
    connect(form_, &ScanForm::edited, &checkSoon_, qOverload<>(&QTimer::start));
    connect(&checkSoon_, &QTimer::timeout, this, &ScanPane::check);
    connect(progress_, &ProgressPanel::pauseWanted, this, &ScanPane::pause);
    connect(progress_, &ProgressPanel::cancelWanted, this, [this] { link_.cancelJob(); });
    connect(reports_, &ScanReports::captioned, progress_, &ProgressPanel::setCaption);
    connect(reports_, &ScanReports::ticked, progress_, &ProgressPanel::show);
    connect(reports_, &ScanReports::noticed, this, &ScanPane::showNotice);
    connect(reports_, &ScanReports::ended, this, &ScanPane::scanEnded);
    connect(&link_, &WindowLink::jobChanged, this, [this](Job job) {
        progress_->setVisible(job == Job::scanning);
        find_->setEnabled(job == Job::none);
        if (job == Job::scanning)
            progress_->begin();
    });
    connect(&link_, &WindowLink::figuresChanged, this, [this] { progress_->setGroups(link_.rows().figures().groups); });
}

void ScanPane::showOrder(const ScanOrder& order)
{
    form_->show(order);
}

void ScanPane::clear()
{
    showOrder(orderFrom({}));
}

void ScanPane::start()
{
    run(form_->order());
}

void ScanPane::startAgain()
{
    const Settings settings = link_.desktop().settings();
    if (settings.lastScan)
        run(orderFrom(settings));
    else
        start();
}

void ScanPane::run(const ScanOrder& order)
{
    pause_->set(false);
    link_.run([order, reports = QPointer<ScanReports>(reports_), pause = pause_](Workbench& bench) {
        runOrderedScan(bench, order, reports, pause);
    });
}

void ScanPane::pause(bool paused)
{
    pause_->set(paused);
    progress_->setPaused(paused);
}

void ScanPane::check()
{
    link_.fetch(
        this, [order = form_->order()](Workbench& bench) { return checkOrder(bench, order); },
        [this](const OrderCheck& check) { form_->showCheck(check); });
}

void ScanPane::scanEnded(const ScanOutcome& outcome)
{
    if (outcome.refused) {
        OrderCheck check;
        check.problem = outcome.problem;
        form_->showCheck(check);
        Q_EMIT link_.statusTold(outcome.problem);
    } else if (outcome.cancelled) {
        const QString groups =
            outcome.groups == 1 ? shown(TextId::oneGroup) : shown(TextId::manyGroups, {std::to_string(outcome.groups)});
        Q_EMIT link_.statusTold(shown(desktop_text::scanCancelled, {groups.toStdString()}));
    } else if (outcome.rows == 0 && !outcome.trivial) {
        askToRevise();
    }
}

void ScanPane::askToRevise()
{
    auto* const box = new QMessageBox(QMessageBox::Question, shown(desktop_text::reviseTitle),
                                      shown(TextId::reviseParameters), QMessageBox::Yes | QMessageBox::No, window());
    box->setObjectName(QStringLiteral("scan.revise"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this](int answer) {
        if (answer == QMessageBox::Yes)
            form_->setFocus();
    });
    box->open();
}

void ScanPane::showNotice(const QString& text)
{
    auto* const box =
        new QMessageBox(QMessageBox::Information, QStringLiteral("Kelvane"), text, QMessageBox::Ok, window());
    box->setObjectName(QStringLiteral("scan.notice"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->setCheckBox(new QCheckBox(shown(desktop_text::doNotShowAgain)));
    connect(box, &QMessageBox::finished, this, [this, box] {
        if (box->checkBox()->isChecked())
            link_.desktop().change([](Settings& settings) { settings.noticesOff |= notice_flag::firstScanShown; });
    });
    box->show();
}

}  // namespace kelvane
