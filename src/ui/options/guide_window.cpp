#include "ui/options/guide_window.h"

#include <QHBoxLayout>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QTextBlock>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr int widestPicture = 580;  // what the window has room for beside its chapters

// Pictures that fit: scaled smoothly, and with as many pixels as the screen has.
class GuideText final : public QTextBrowser {
public:
    QVariant loadResource(int type, const QUrl& name) override
    {
        QVariant found = QTextBrowser::loadResource(type, name);
        QImage picture;
        if (type != QTextDocument::ImageResource || !picture.loadFromData(found.toByteArray()))
            return found;
        const int width = std::min(picture.width(), widestPicture);
        const int pixels = std::min(picture.width(), qRound(width * devicePixelRatioF()));
        picture = picture.scaledToWidth(pixels, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(static_cast<qreal>(pixels) / width);
        return picture;
    }
};

namespace say = desktop_text;

// Markdown has no names for places: they are put onto the headings.
void nameHeadings(QTextDocument& document, const GuidePage& page)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0)
            continue;
        QStringList names{anchorOf(block.text())};
        names += page.places.keys(block.text());
        QTextCharFormat named;
        named.setAnchor(true);
        named.setAnchorNames(names);
        QTextCursor cursor(block);
        cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(named);
    }
}

QPushButton* button(const char* name, TextId label, QStyle::StandardPixmap icon, const QWidget& of)
{
    auto* const made = new QPushButton(of.style()->standardIcon(icon), {});
    made->setObjectName(QString::fromLatin1(name));
    made->setAccessibleName(shown(label));
    made->setToolTip(shown(label));
    made->setAutoDefault(false);
    return made;
}

bool hasWords(const GuidePage& page, const QStringList& words)
{
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return page.markdown.contains(word, Qt::CaseInsensitive); });
}

}  // namespace

GuideWindow::GuideWindow(WindowLink& link)
    : QDialog(link.frame()),
      pages_(guidePages()),
      back_(button("guideBack", say::guideBack, QStyle::SP_ArrowBack, *this)),
      forward_(button("guideForward", say::guideForward, QStyle::SP_ArrowForward, *this)),
      search_(new QLineEdit),
      chapters_(new QListWidget),
      text_(new GuideText)
{
    setObjectName(QStringLiteral("guideWindow"));
    setWindowTitle(shown(say::guideTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(900, 680);
    text_->setObjectName(QStringLiteral("guideText"));
    text_->setAccessibleName(shown(say::guideText));
    text_->setOpenLinks(false);
    text_->setSearchPaths({QStringLiteral(":/guide")});
    text_->document()->setDocumentMargin(16);
    connect(text_, &QTextBrowser::anchorClicked, this, &GuideWindow::follow);
    makeChapters();
    auto* const middle = new QHBoxLayout;
    middle->addWidget(chapters_);
    middle->addWidget(text_, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(makeBar());
    layout->addLayout(middle, 1);
    visit({});
    text_->setFocus();
}

void GuideWindow::showEvent(QShowEvent* event)
{
    windowHandle()->setTransientParent(nullptr);
    QDialog::showEvent(event);
}

QWidget* GuideWindow::makeBar()
{
    auto* const bar = new QWidget;
    auto* const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    search_->setObjectName(QStringLiteral("guideSearch"));
    search_->setPlaceholderText(shown(say::guideSearch));
    search_->setAccessibleName(shown(say::guideSearch));
    search_->setClearButtonEnabled(true);
    layout->addWidget(back_);
    layout->addWidget(forward_);
    layout->addWidget(search_, 1);
    connect(back_, &QPushButton::clicked, this, [this] { step(-1); });
    connect(forward_, &QPushButton::clicked, this, [this] { step(1); });
    connect(search_, &QLineEdit::textChanged, this, &GuideWindow::search);
    connect(search_, &QLineEdit::returnPressed, this, &GuideWindow::findNext);
    return bar;
}

void GuideWindow::makeChapters()
{
    chapters_->setSpacing(2);
    chapters_->setObjectName(QStringLiteral("guideChapters"));
    chapters_->setAccessibleName(shown(say::guideChapters));
    chapters_->setFixedWidth(230);
    chapters_->setWordWrap(true);
    for (const GuidePage& page : pages_)
        chapters_->addItem(page.title);
    connect(chapters_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            visit({row, {}});
    });
}

void GuideWindow::goTo(const QString& name)
{
    const int page = name.isEmpty() ? 0 : pageOfPlace(pages_, name);
    visit(page < 0 ? Place{} : Place{page, name});
}

void GuideWindow::visit(const Place& place)
{
    if (!visited_.empty() && visited_[at_] == place)
        return display(place);
    visited_.resize(visited_.empty() ? 0 : at_ + 1);
    visited_.push_back(place);
    at_ = visited_.size() - 1;
    display(place);
}

void GuideWindow::display(const Place& place)
{
    back_->setEnabled(at_ > 0);
    forward_->setEnabled(at_ + 1 < visited_.size());
    if (place.page >= static_cast<int>(pages_.size())) {
        text_->setPlainText(shown(say::guideMissing));
        return;
    }
    const GuidePage& page = pages_[static_cast<std::size_t>(place.page)];
    if (std::exchange(page_, place.page) != place.page) {
        text_->setMarkdown(page.markdown);
        nameHeadings(*text_->document(), page);
        const QSignalBlocker quiet(chapters_);
        chapters_->setCurrentRow(place.page);
    }
    if (place.name.isEmpty())
        text_->moveCursor(QTextCursor::Start);
    else
        text_->scrollToAnchor(place.name);
    markFound();
}

void GuideWindow::step(int by)
{
    at_ += static_cast<std::size_t>(by);
    display(visited_[at_]);
}

// Of this guide alone; it has no others.
void GuideWindow::follow(const QUrl& link)
{
    int page = page_;
    if (!link.path().isEmpty()) {
        const auto named = std::find_if(pages_.begin(), pages_.end(),
                                        [&](const GuidePage& candidate) { return candidate.file == link.path(); });
        page = static_cast<int>(named - pages_.begin());
    }
    visit({page, link.fragment()});
}

void GuideWindow::search(const QString& typed)
{
    const QStringList words = typed.split(u' ', Qt::SkipEmptyParts);
    int firstFound = -1;
    for (int row = 0; row < chapters_->count(); ++row) {
        const bool fits = hasWords(pages_[static_cast<std::size_t>(row)], words);
        chapters_->item(row)->setHidden(!fits);
        if (fits && firstFound < 0)
            firstFound = row;
    }
    const bool leaves = page_ >= 0 && chapters_->item(page_)->isHidden() && firstFound >= 0;
    if (leaves)
        visit({firstFound, {}});
    markFound();
}

void GuideWindow::findNext()
{
    if (text_->find(search_->text()))
        return;
    text_->moveCursor(QTextCursor::Start);
    text_->find(search_->text());
}

void GuideWindow::markFound()
{
    QList<QTextEdit::ExtraSelection> marks;
    QTextCharFormat marked;
    marked.setBackground(palette().brush(QPalette::Highlight));
    marked.setForeground(palette().brush(QPalette::HighlightedText));
    for (const QString& word : search_->text().split(u' ', Qt::SkipEmptyParts)) {
        if (word.size() < 2)
            continue;  // would mark nearly everything
        QTextCursor cursor = text_->document()->find(word);
        for (; !cursor.isNull(); cursor = text_->document()->find(word, cursor))
            marks.push_back({cursor, marked});
    }
    text_->setExtraSelections(marks);
}

}  // namespace kelvane
