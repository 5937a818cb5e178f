#include "ui/preview/compare_texts.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"
#include "ui/core/wrapped_label.h"

namespace kelvane {
namespace {

namespace say = desktop_text;
constexpr int mostMarks = 4'000;

// Between the colours of text and of selections, so that it fits light and dark themes.
QColor blend(const QPalette& palette, double weight)
{
    const QColor base = palette.color(QPalette::Base), mark = palette.color(QPalette::Highlight);
    const auto mixed = [weight](int from, int to) { return static_cast<int>(from + (to - from) * weight); };
    return {mixed(base.red(), mark.red()), mixed(base.green(), mark.green()), mixed(base.blue(), mark.blue())};
}

QString joined(const std::vector<AlignedLine>& lines)
{
    QString text;
    for (const AlignedLine& line : lines)
        text += toQt(line.text) + QLatin1Char('\n');
    return text;
}

}  // namespace

CompareTexts::CompareTexts(QWidget* parent)
    : QWidget(parent),
      columns_(new QHBoxLayout),
      summary_(new QLabel(this)),
      previous_(new QPushButton(shown(say::comparePreviousDifference), this)),
      next_(new QPushButton(shown(say::compareNextDifference), this))
{
    summary_->setObjectName(QStringLiteral("compare.summary"));
    summary_->setWordWrap(true);
    previous_->setObjectName(QStringLiteral("compare.previous"));
    next_->setObjectName(QStringLiteral("compare.next"));
    auto* const bar = new QHBoxLayout;
    bar->addWidget(summary_, 1);
    bar->addWidget(previous_);
    bar->addWidget(next_);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(columns_, 1);
    all->addLayout(bar);
    connect(previous_, &QPushButton::clicked, this, [this] { go(-1); });
    connect(next_, &QPushButton::clicked, this, [this] { go(1); });
}

void CompareTexts::show(const ComparedFiles& compared)
{
    while (QLayoutItem* const item = columns_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    texts_.clear();
    place_ = -1;
    places_ = compared.texts.places;
    for (std::size_t i = 0; i < compared.texts.columns.size(); ++i)
        texts_.push_back(makeColumn(compared.files[i], compared.texts.columns[i]));
    previous_->setEnabled(!places_.empty());
    next_->setEnabled(!places_.empty());
    if (texts_.empty())
        summary_->setText(shown(say::compareNoText));
    else if (compared.texts.tooDifferent)
        summary_->setText(shown(say::compareTooDifferent));
    else if (places_.empty())
        summary_->setText(shown(say::compareTextsSame));
    else
        summary_->setText(places_.size() == 1 ? shown(say::compareTextsOnePlace)
                                              : shown(say::compareTextsDiffer, {std::to_string(places_.size())}));
}

QPlainTextEdit* CompareTexts::makeColumn(const ComparedFile& file, const std::vector<AlignedLine>& lines)
{
    auto* const box = new QWidget(this);
    auto* const title = new WrappedLabel("", box);
    title->setText(file.name);
    title->setToolTip(plainTip(file.folder));
    auto* const text = new QPlainTextEdit(box);
    text->setObjectName(QStringLiteral("compare.text%1").arg(texts_.size()));
    text->setAccessibleName(file.name);
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setPlainText(joined(lines));
    markLines(text, lines);
    linkScrolling(text);
    auto* const layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(title);
    layout->addWidget(text, 1);
    columns_->addWidget(box, 1);
    return text;
}

void CompareTexts::markLines(QPlainTextEdit* column, const std::vector<AlignedLine>& lines) const
{
    QList<QTextEdit::ExtraSelection> marks;
    QTextBlock block = column->document()->firstBlock();
    for (std::size_t row = 0; row < lines.size() && marks.size() < mostMarks; ++row, block = block.next()) {
        if (!lines[row].differs)
            continue;
        QTextEdit::ExtraSelection line;
        line.cursor = QTextCursor(block);
        line.format.setBackground(blend(palette(), 0.18));
        line.format.setProperty(QTextFormat::FullWidthSelection, true);
        marks += line;
        for (const TextRange& range : lines[row].marks) {
            QTextEdit::ExtraSelection words;
            words.cursor = QTextCursor(block);
            words.cursor.setPosition(block.position() + static_cast<int>(range.first));
            words.cursor.setPosition(block.position() + static_cast<int>(range.first + range.count),
                                     QTextCursor::KeepAnchor);
            words.format.setBackground(blend(palette(), 0.45));
            words.format.setFontUnderline(true);
            marks += words;
        }
    }
    column->setExtraSelections(marks);
}

void CompareTexts::linkScrolling(QPlainTextEdit* column)
{
    connect(column->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        for (QPlainTextEdit* const text : texts_)
            text->verticalScrollBar()->setValue(value);
    });
    connect(column->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        for (QPlainTextEdit* const text : texts_)
            text->horizontalScrollBar()->setValue(value);
    });
}

void CompareTexts::go(int step)
{
    place_ = std::clamp(place_ + step, 0, static_cast<int>(places_.size()) - 1);
    for (QPlainTextEdit* const text : texts_) {
        const auto row = static_cast<int>(places_[static_cast<std::size_t>(place_)]);
        text->setTextCursor(QTextCursor(text->document()->findBlockByNumber(row)));
        text->centerCursor();
    }
}

}  // namespace kelvane
