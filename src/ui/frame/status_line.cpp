#include "ui/frame/status_line.h"

#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <utility>

#include "base/desktop_texts/frame.h"
#include "results/status_texts.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr int messageMilliseconds = 15'000;

QLabel* addPart(QMainWindow& window, const char* name, TextId meaning)
{
    auto* const part = new QLabel(&window);
    part->setObjectName(QString::fromLatin1(name));
    part->setAccessibleName(shown(meaning));
    part->setTextFormat(Qt::PlainText);
    part->setContentsMargins(8, 0, 8, 0);
    window.statusBar()->addPermanentWidget(part);
    return part;
}

}  // namespace

StatusLine::StatusLine(WindowLink& link, QMainWindow& window)
    : QObject(&window),
      link_(link),
      marked_(addPart(window, "status.marked", desktop_text::paneOfMarked)),
      items_(addPart(window, "status.items", desktop_text::paneOfItems))
{
    connect(&link, &WindowLink::statusTold, this,
            [&window](const QString& text) { window.statusBar()->showMessage(text, messageMilliseconds); });
    connect(&link, &WindowLink::figuresChanged, this, &StatusLine::askForTexts);
}

void StatusLine::askForTexts()
{
    if (std::exchange(asked_, true)) {
        again_ = true;
        return;
    }
    link_.fetch(
        this,
        [](Workbench& bench) {
            const auto orEmpty = [](const std::optional<std::u16string>& text) { return toQt(text.value_or(u"")); };
            return std::pair(orEmpty(markedText(bench.results(), shownSizeText)),
                             orEmpty(itemsText(bench.results(), shownSizeText)));
        },
        [this](const std::pair<QString, QString>& texts) {
            marked_->setText(texts.first);
            items_->setText(texts.second);
            asked_ = false;
            if (std::exchange(again_, false))
                askForTexts();
        });
}

}  // namespace kelvane
