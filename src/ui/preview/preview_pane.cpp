#include "ui/preview/preview_pane.h"

#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/error_text.h"
#include "base/desktop_texts/preview.h"
#include "platform/native_text.h"
#include "text/file_kinds.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/core/wrapped_label.h"
#include "ui/preview/entries_view.h"
#include "ui/preview/facts_view.h"
#include "ui/preview/hex_view.h"
#include "ui/preview/open_text.h"
#include "ui/preview/picture_view.h"
#include "ui/preview/preview_reader.h"
#include "ui/preview/text_view.h"
#include "ui/preview/why_matched.h"
#include "ui/preview/why_view.h"

namespace kelvane {
namespace {

namespace say = desktop_text;
constexpr int settlingMs = 40;

void makeBold(QLabel* label)
{
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
}

}  // namespace

PreviewPane::PreviewPane(WindowLink& link) : link_(link), worker_(link.desktop()), comparing_(link.desktop())
{
    setObjectName(QStringLiteral("preview.content"));
    makeViews();
    connectViews();
    showMessage(shown(say::previewNoItem));
}

void PreviewPane::makeViews()
{
    name_ = new WrappedLabel("preview.name", this);
    makeBold(name_);
    state_ = new WrappedLabel("preview.state", this);
    makeBold(state_);
    note_ = new WrappedLabel("preview.note", this);
    views_ = new QStackedWidget(this);
    message_ = new WrappedLabel("preview.message", this);
    message_->setAlignment(Qt::AlignCenter);
    views_->addWidget(message_);
    views_->addWidget(text_ = new TextView(this));
    views_->addWidget(picture_ = new PictureView(this));
    views_->addWidget(entries_ = new EntriesView(this));
    views_->addWidget(bytes_ = new HexView(this));
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("preview.tabs"));
    tabs_->addTab(facts_ = new FactsView(this), shown(say::previewFacts));
    tabs_->addTab(why_ = new WhyView(this), shown(say::previewWhy));
    auto* const halves = new QSplitter(Qt::Vertical, this);
    halves->addWidget(views_);
    halves->addWidget(tabs_);
    halves->setStretchFactor(0, 3);
    halves->setStretchFactor(1, 2);
    halves->setChildrenCollapsible(false);
    auto* const all = new QVBoxLayout(this);
    for (QWidget* const widget : {static_cast<QWidget*>(name_), static_cast<QWidget*>(state_)})
        all->addWidget(widget);
    all->addWidget(note_);
    all->addWidget(halves, 1);
}

void PreviewPane::connectViews()
{
    settling_.setSingleShot(true);
    settling_.setInterval(settlingMs);
    connect(&settling_, &QTimer::timeout, this, &PreviewPane::ask);
    connect(&link_, &WindowLink::currentRowChanged, this, &PreviewPane::itemChanged);
    connect(&link_, &WindowLink::listBegan, this, &PreviewPane::itemChanged);
    connect(&link_, &WindowLink::optionsChanged, this, [this] {
        worker_.renewTools();
        comparing_.renewTools();
    });
    connect(bytes_, &HexView::chunkWanted, this, &PreviewPane::askChunk);
    connect(tabs_, &QTabWidget::currentChanged, this, &PreviewPane::askWhy);
    connect(text_, &TextView::openWanted, this, &PreviewPane::openText);
}

template <class Read, class Take>
void PreviewPane::read(PreviewWorker& worker, Read question, Take take)
{
    worker.post([target = QPointer<PreviewPane>(this), generation = generation_, question = std::move(question),
                 take = std::move(take)](PreviewTools& tools) mutable {
        auto answer = std::make_shared<decltype(question(tools))>(question(tools));
        postToMain([target = std::move(target), generation, answer = std::move(answer), take = std::move(take)] {
            if (target && target->generation_ == generation)
                take(*target, std::move(*answer));
        });
    });
}

void PreviewPane::itemChanged()
{
    ++generation_;
    worker_.dropAll();
    comparing_.dropAll();
    settling_.start();
}

void PreviewPane::ask()
{
    const auto item = link_.currentItem();
    if (!item) {
        takeFile({});
        return;
    }
    if (!isVisible())
        return;
    link_.fetch(
        this, [item = *item](Workbench& bench) { return previewedFile(bench, item); },
        [this, generation = generation_](PreviewedFile file) {
            if (generation == generation_)
                takeFile(std::move(file));
        });
}

void PreviewPane::takeFile(PreviewedFile file)
{
    file_ = std::move(file);
    state_->hide();
    note_->hide();
    name_->setVisible(static_cast<bool>(file_.file));
    facts_->show({});
    why_->clear();
    whyAsked_ = false;
    if (!file_.file) {
        showMessage(shown(say::previewNoItem));
        return;
    }
    name_->setText(toQt(displayFromNative(file_.file->parent() != nullptr ? file_.file->name()
                                                                          : file_.file->path().filename().native())));
    showMessage(shown(say::previewReading));
    read(
        worker_, [item = file_.file](PreviewTools& tools) { return readPreview(item, tools); },
        [](PreviewPane& pane, const PreviewContent& content) { pane.takeContent(content); });
    read(
        worker_,
        [item = file_.file, columns = file_.columns](PreviewTools& tools) { return readFacts(item, columns, tools); },
        [](PreviewPane& pane, const std::vector<Fact>& facts) { pane.facts_->show(facts); });
    askWhy();
}

// Contents are compared once somebody looks at the outcome.
void PreviewPane::askWhy()
{
    if (tabs_->currentWidget() != why_ || !file_.file || whyAsked_)
        return;
    whyAsked_ = true;
    why_->showBusy();
    read(
        comparing_, [file = file_](PreviewTools& tools) { return whyMatched(file, tools); },
        [](PreviewPane& pane, const WhyMatched& why) { pane.why_->show(why); });
}

void PreviewPane::takeContent(const PreviewContent& content)
{
    showState(content);
    switch (content.kind) {
    case PreviewContent::Kind::nothing:
        showMessage(toQt(content.note));
        return;
    case PreviewContent::Kind::text:
        text_->show(content);
        text_->setOpenEnabled(file_.file->inFileSystem());
        views_->setCurrentWidget(text_);
        return;
    case PreviewContent::Kind::picture:
        picture_->show(imageOf(content.picture));
        views_->setCurrentWidget(picture_);
        return;
    case PreviewContent::Kind::entries:
        entries_->show(content.entries);
        views_->setCurrentWidget(entries_);
        return;
    case PreviewContent::Kind::bytes:
        bytes_->show(file_.file->inFileSystem() ? content.bytes : std::min(content.bytes, preview_limit::packedBytes),
                     content.head);
        views_->setCurrentWidget(bytes_);
    }
}

void PreviewPane::showMessage(const QString& message)
{
    message_->setText(message);
    views_->setCurrentWidget(message_);
}

void PreviewPane::showState(const PreviewContent& content)
{
    state_->setText(shown(say::previewChanged));
    state_->setVisible(content.state == FileState::changed);
    QString note = content.kind == PreviewContent::Kind::nothing ? QString() : toQt(content.note);
    if (content.cut && content.kind == PreviewContent::Kind::entries)
        note += (note.isEmpty() ? QString() : QStringLiteral("\n")) + shown(say::previewCut);
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
}

void PreviewPane::askChunk(std::uint64_t position)
{
    read(
        worker_,
        [item = file_.file, position](PreviewTools& tools) {
            auto bytes = readBytes(*item, position, preview_limit::chunk, tools);
            return bytes ? *std::move(bytes) : std::vector<std::byte>();
        },
        [position](PreviewPane& pane, std::vector<std::byte> bytes) {
            pane.bytes_->takeChunk(position, std::move(bytes));
        });
}

void PreviewPane::openText()
{
    if (!file_.file)
        return;
    read(
        worker_,
        [item = file_.file, viewer = link_.desktop().settings().textViewer](PreviewTools& tools) {
            return openInTextViewer(*item, viewer, tools.platform.processes());
        },
        [](PreviewPane& pane, const std::u16string& problem) {
            if (!problem.empty())
                Q_EMIT pane.link_.statusTold(toQt(problem));
        });
}

// A pane that nobody sees reads nothing.
void PreviewPane::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    itemChanged();
}

void PreviewPane::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    itemChanged();
}

}  // namespace kelvane
