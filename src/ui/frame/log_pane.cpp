#include "ui/frame/log_pane.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTime>
#include <QVBoxLayout>

#include "base/desktop_texts/frame.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

// The first ones go when there are more.
constexpr int mostLines = 5'000;
// At a time: a scan may tell of thousands of files at once, and the window is to answer meanwhile.
constexpr qsizetype linesInTurn = 400;

QPlainTextEdit* makeLines()
{
    auto* const lines = new QPlainTextEdit;
    lines->setObjectName(QStringLiteral("log.lines"));
    lines->setAccessibleName(shown(desktop_text::paneLog));
    lines->setReadOnly(true);
    lines->setTabChangesFocus(true);
    lines->setUndoRedoEnabled(false);
    lines->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines->setMaximumBlockCount(mostLines);
    return lines;
}

QPushButton* makeButton(TextId label, const char* name)
{
    auto* const button = new QPushButton(shown(label));
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

}  // namespace

LogPane::LogPane(WindowLink& link) : lines_(makeLines())
{
    setObjectName(QStringLiteral("log.content"));
    auto* const copy = makeButton(desktop_text::logCopy, "log.copy");
    auto* const clear = makeButton(desktop_text::logClear, "log.clear");
    auto* const buttons = new QVBoxLayout;
    buttons->addWidget(copy);
    buttons->addWidget(clear);
    buttons->addStretch();
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(6, 6, 6, 6);
    row->addWidget(lines_, 1);
    row->addLayout(buttons);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(lines_->toPlainText()); });
    connect(clear, &QPushButton::clicked, this, [this] {
        waiting_.clear();
        lines_->clear();
    });
    turn_.setSingleShot(true);
    turn_.setInterval(0);
    connect(&turn_, &QTimer::timeout, this, &LogPane::showWaiting);
    connect(&link, &WindowLink::statusTold, this, &LogPane::add);
    connect(&link, &WindowLink::logged, this, &LogPane::add);
}

void LogPane::add(const QString& line)
{
    if (line.isEmpty())
        return;
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
    waiting_.append(time + QStringLiteral("  ") + line);
    if (waiting_.size() > mostLines)
        waiting_.removeFirst();
    if (!turn_.isActive())
        turn_.start();
}

void LogPane::showWaiting()
{
    const QStringList now = waiting_.mid(0, linesInTurn);
    waiting_ = waiting_.mid(now.size());
    lines_->appendPlainText(now.join(QLatin1Char('\n')));
    if (!waiting_.isEmpty())
        turn_.start();
}

}  // namespace kelvane
