#include "ui/preview/hex_view.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"
#include "ui/preview/hex_lines.h"
#include "ui/preview/preview_content.h"

namespace kelvane {
namespace {

constexpr std::uint64_t mostSteps = 1'000'000'000;
constexpr std::size_t mostChunks = 64;
constexpr int margin = 4;

std::uint64_t chunkOf(std::uint64_t line)
{
    return line * bytesPerHexLine / preview_limit::chunk * preview_limit::chunk;
}

}  // namespace

HexView::HexView(QWidget* parent) : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("preview.bytes"));
    setAccessibleName(shown(desktop_text::previewBytesName));
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::StrongFocus);
}

void HexView::show(std::uint64_t bytes, std::vector<std::byte> head)
{
    bytes_ = bytes;
    linesPerStep_ = hexLineCount(bytes) / mostSteps + 1;
    chunks_.clear();
    kept_.clear();
    asked_.reset();
    keep(0, std::move(head));
    updateBars();
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    viewport()->update();
    wantVisible();
}

void HexView::takeChunk(std::uint64_t position, std::vector<std::byte> bytes)
{
    if (asked_ != position)
        return;
    asked_.reset();
    keep(position, std::move(bytes));
    viewport()->update();
    wantVisible();
}

void HexView::keep(std::uint64_t position, std::vector<std::byte> bytes)
{
    chunks_[position] = std::move(bytes);
    kept_.push_back(position);
    if (kept_.size() > mostChunks) {
        chunks_.erase(kept_.front());
        kept_.pop_front();
    }
}

// The last step is shorter than the others.
std::uint64_t HexView::firstLine() const
{
    const std::uint64_t lines = hexLineCount(bytes_), inView = static_cast<std::uint64_t>(linesInView());
    if (lines > inView && verticalScrollBar()->value() == verticalScrollBar()->maximum())
        return lines - inView;
    return static_cast<std::uint64_t>(verticalScrollBar()->value()) * linesPerStep_;
}

int HexView::linesInView() const
{
    return std::max(1, (viewport()->height() - margin) / std::max(1, fontMetrics().lineSpacing()));
}

QString HexView::lineText(std::uint64_t line) const
{
    const std::uint64_t position = line * bytesPerHexLine;
    const auto chunk = chunks_.find(chunkOf(line));
    if (chunk == chunks_.end() || position - chunk->first >= chunk->second.size())
        return toQt(hexLine(position, {}));
    const auto rest = std::span(chunk->second).subspan(position - chunk->first);
    return toQt(hexLine(position, rest.first(std::min<std::size_t>(rest.size(), bytesPerHexLine))));
}

QStringList HexView::visibleLines() const
{
    QStringList lines;
    const std::uint64_t first = firstLine(), count = hexLineCount(bytes_);
    for (int i = 0; i < linesInView() && first + static_cast<std::uint64_t>(i) < count; ++i)
        lines += lineText(first + static_cast<std::uint64_t>(i));
    return lines;
}

void HexView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Text));
    int y = margin + fontMetrics().ascent();
    for (const QString& line : visibleLines()) {
        painter.drawText(margin - horizontalScrollBar()->value(), y, line);
        y += fontMetrics().lineSpacing();
    }
}

void HexView::wantVisible()
{
    const std::uint64_t count = hexLineCount(bytes_);
    if (count == 0 || asked_)
        return;
    const std::uint64_t last = std::min(count - 1, firstLine() + static_cast<std::uint64_t>(linesInView()));
    for (std::uint64_t at = chunkOf(firstLine()); at <= chunkOf(last) && !asked_; at += preview_limit::chunk) {
        if (!chunks_.contains(at))
            asked_ = at;
    }
    if (asked_)
        Q_EMIT chunkWanted(*asked_);
}

void HexView::updateBars()
{
    const auto steps = static_cast<int>(hexLineCount(bytes_) / linesPerStep_);
    verticalScrollBar()->setRange(0, std::max(0, steps - linesInView()));
    verticalScrollBar()->setPageStep(linesInView());
    const int width = 2 * margin + fontMetrics().horizontalAdvance(toQt(hexLine(0, {}))) +
                      static_cast<int>(bytesPerHexLine) * fontMetrics().horizontalAdvance(QLatin1Char('0'));
    horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
}

void HexView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateBars();
    wantVisible();
}

void HexView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Home)
        verticalScrollBar()->setValue(0);
    else if (event->key() == Qt::Key_End)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void HexView::scrollContentsBy(int, int)
{
    viewport()->update();
    wantVisible();
}

}  // namespace kelvane
