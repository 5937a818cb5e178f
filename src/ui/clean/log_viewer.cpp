#include "ui/clean/log_viewer.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "base/desktop_texts/clean.h"
#include "ui/clean/boxes.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr std::size_t mostShown = 16u << 20;  // bytes
constexpr std::size_t chunk = 64u << 10;
constexpr qsizetype piece = 128 << 10;  // units: what a text widget takes without a pause

struct LogText {
    std::filesystem::path path;
    QString text;  // of the log, or why there is none
    bool isLog = false;
    bool cut = false;
};

Result<std::string> readBeginning(FileSystem& files, const std::filesystem::path& path)
{
    auto reader = files.openForReading(path, ReadPattern::sequential);
    if (!reader)
        return reader.error();
    std::string bytes;
    std::vector<std::byte> buffer(chunk);
    while (bytes.size() < mostShown) {
        const auto read = (*reader)->read(buffer);
        if (!read)
            return read.error();
        if (*read == 0)
            break;
        bytes.append(reinterpret_cast<const char*>(buffer.data()), *read);
    }
    return bytes;
}

LogText readLog(FileSystem& files, const std::filesystem::path& path)
{
    if (path.empty())
        return {{}, shown(say::logNone)};
    const auto bytes = readBeginning(files, path);
    if (!bytes)
        return {path, shown(say::logUnreadable, {errorShown(bytes.error()).toStdString()})};
    QString text = toQt(std::string_view(*bytes));
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return {path, text, true, bytes->size() >= mostShown};
}

// Finds forth and back, and begins anew at the end.
class LogDialog final : public QDialog {
public:
    LogDialog(WindowLink& link, const LogText& log)
        : QDialog(topOf(link)),
          link_(link),
          whole_(log.text),
          text_(new QPlainTextEdit),
          wanted_(new QLineEdit),
          found_(new QLabel)
    {
        setObjectName(QStringLiteral("cleanupLog"));
        setWindowTitle(shown(say::logTitle));
        setAttribute(Qt::WA_DeleteOnClose);
        text_->setObjectName(QStringLiteral("logText"));
        text_->setAccessibleName(windowTitle());
        text_->setReadOnly(true);
        text_->setUndoRedoEnabled(false);
        text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        text_->setLineWrapMode(QPlainTextEdit::NoWrap);
        auto* const layout = new QVBoxLayout(this);
        auto* const path = new QLabel(pathShown(log.path));
        path->setTextFormat(Qt::PlainText);
        layout->addWidget(path);
        layout->addLayout(makeSearch());
        layout->addWidget(text_);
        if (log.cut)
            layout->addWidget(new QLabel(shown(say::logCut)));
        layout->addWidget(makeButtons(log.path));
        resize(820, 520);
        wanted_->setFocus();
        fillOn();
    }

private:
    [[nodiscard]] bool isFilled() const { return filled_ == whole_.size(); }

    // Piece by piece, with other events between them.
    void fillOn()
    {
        addPiece();
        if (!isFilled())
            QTimer::singleShot(0, this, [this] { fillOn(); });
    }
    void fillAtOnce()
    {
        while (!isFilled())
            addPiece();
    }
    void addPiece()
    {
        const qsizetype line = whole_.indexOf(u'\n', std::min(filled_ + piece, whole_.size()));
        const qsizetype end = line < 0 ? whole_.size() : line + 1;
        QTextCursor cursor(text_->document());
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(whole_.mid(filled_, end - filled_));
        filled_ = end;
    }

    QLayout* makeSearch()
    {
        auto* const line = new QHBoxLayout;
        auto* const label = new QLabel(shown(say::logFind));
        label->setBuddy(wanted_);
        wanted_->setObjectName(QStringLiteral("logFind"));
        found_->setObjectName(QStringLiteral("logFound"));
        line->addWidget(label);
        line->addWidget(wanted_, 1);
        addFinder(*line, "logPrevious", say::logPrevious, QTextDocument::FindBackward);
        QPushButton* const next = addFinder(*line, "logNext", say::logNext, {});
        next->setDefault(true);
        line->addWidget(found_);
        return line;
    }

    QPushButton* addFinder(QHBoxLayout& line, const char* name, TextId text, QTextDocument::FindFlags flags)
    {
        auto* const button = new QPushButton(shown(text));
        button->setObjectName(QString::fromLatin1(name));
        connect(button, &QPushButton::clicked, this, [this, flags] { find(flags); });
        line.addWidget(button);
        return button;
    }

    void find(QTextDocument::FindFlags flags)
    {
        fillAtOnce();
        bool found = text_->find(wanted_->text(), flags);
        if (!found) {
            text_->moveCursor(flags.testFlag(QTextDocument::FindBackward) ? QTextCursor::End : QTextCursor::Start);
            found = text_->find(wanted_->text(), flags);
        }
        found_->setText(found ? QString() : shown(say::logNotFound));
    }

    QWidget* makeButtons(const std::filesystem::path& path)
    {
        auto* const buttons = new QDialogButtonBox;
        const auto add = [&](const char* name, TextId text, QDialogButtonBox::ButtonRole role) {
            QPushButton* const button = buttons->addButton(shown(text), role);
            button->setObjectName(QString::fromLatin1(name));
            return button;
        };
        connect(add("logCopy", say::copyAll, QDialogButtonBox::ActionRole), &QPushButton::clicked, this, [this] {
            fillAtOnce();
            text_->selectAll();
            text_->copy();
        });
        connect(add("logOpen", say::logOpen, QDialogButtonBox::ActionRole), &QPushButton::clicked, this,
                [this, path] { openOutside(path); });
        add("logClose", say::closeDialog, QDialogButtonBox::RejectRole);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        return buttons;
    }

    void openOutside(const std::filesystem::path& path)
    {
        link_.run([path](Workbench& bench) {
            if (const Status opened = bench.platform().processes().openFile(path); !opened)
                bench.tell(fromQt(errorShown(opened.error())));
        });
    }

    WindowLink& link_;
    QString whole_;
    qsizetype filled_ = 0;  // of it into the widget
    QPlainTextEdit* text_;
    QLineEdit* wanted_;
    QLabel* found_;
};

}  // namespace

void openLastLog(WindowLink& link, const CleanMemory& memory)
{
    link.fetch(
        &link, [memory](Workbench& bench) { return readLog(bench.platform().files(), memory->lastLog); },
        [&link](const LogText& log) {
            if (!log.isLog)
                openBox(link, {"cleanupNoLog", QMessageBox::Information, shown(say::logTitle), log.text});
            else
                (new LogDialog(link, log))->open();
        });
}

}  // namespace kelvane
