#include "ui/clean/choice_dialog.h"

#include <QComboBox>
#include <QCommandLinkButton>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

// The first line of the text is the button's, the rest explains it.
QCommandLinkButton* linkButton(TextId text, const char* name)
{
    const QString all = shown(text);
    const auto end = all.indexOf(QLatin1Char('\n'));
    auto* const button = new QCommandLinkButton(all.left(end), all.mid(end + 1));
    button->setObjectName(QString::fromLatin1(name));
    button->setAccessibleDescription(all.mid(end + 1));
    return button;
}

QLabel* heading(const QString& text)
{
    auto* const label = new QLabel(text);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    label->setFont(font);
    label->setWordWrap(true);
    return label;
}

QLabel* wrapped(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

QWidget* footer(const QWidget& dialog, std::function<void()> help)
{
    auto* const line = new QWidget;
    auto* const layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 8, 0, 0);
    auto* const icon = new QLabel;
    const int size = dialog.style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(dialog.style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size, size));
    auto* const text = wrapped(shown(TextId::cleanupWarning));
    text->setObjectName(QStringLiteral("cleanupHelp"));
    text->setTextInteractionFlags(Qt::TextBrowserInteraction);
    QObject::connect(text, &QLabel::linkActivated, text, [help = std::move(help)] { help(); });
    layout->addWidget(icon);
    layout->addWidget(text, 1);
    return line;
}

}  // namespace

ChoiceDialog::ChoiceDialog(QWidget* parent, bool linksOffered, std::function<void()> help,
                           std::function<void(CleanupWay)> done)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("cleanupChoice"));
    setWindowTitle(shown(TextId::cleanupTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(heading(shown(TextId::cleanupChoice)));
    layout->addWidget(wrapped(shown(TextId::cleanupChoiceNotes)));
    addChoice("choiceDelete", TextId::choiceDelete, CleanupChoice::deleteItems);
    addChoice("choiceSave", TextId::choiceSave, CleanupChoice::saveResults);
    if (linksOffered) {
        addChoice("choiceLinks", TextId::choiceLinks, CleanupChoice::createLinks);
        addLinkKinds();
    }
    layout->addWidget(footer(*this, std::move(help)));
    setMinimumWidth(520);
    connect(this, &QDialog::finished, this, [this, done = std::move(done)] { done(chosen_); });
}

void ChoiceDialog::addChoice(const char* name, TextId text, CleanupChoice choice)
{
    QCommandLinkButton* const button = linkButton(text, name);
    button->setDefault(choice == CleanupChoice::deleteItems);  // nothing goes before the summary is confirmed
    layout()->addWidget(button);
    connect(button, &QAbstractButton::clicked, this, [this, choice] {
        chosen_.choice = choice;
        if (kinds_ != nullptr)
            chosen_.links = static_cast<LinkKind>(kinds_->currentData().toInt());
        accept();
    });
}

void ChoiceDialog::addLinkKinds()
{
    namespace say = desktop_text;
    kinds_ = new QComboBox;
    kinds_->setObjectName(QStringLiteral("linkKind"));
    for (const auto& [kind, text] : {std::pair(LinkKind::automatic, say::linkKindAuto),
                                     {LinkKind::hard, say::linkKindHard},
                                     {LinkKind::symbolic, say::linkKindSymbolic},
                                     {LinkKind::clone, say::linkKindClone}})
        kinds_->addItem(shown(text), static_cast<int>(kind));
    auto* const line = new QWidget;
    auto* const form = new QFormLayout(line);
    form->setContentsMargins(36, 0, 0, 0);
    form->addRow(shown(say::linkKindLabel), kinds_);
    layout()->addWidget(line);
}

// Enter would press the default choice from anywhere, also from the box beside another one.
void ChoiceDialog::keyPressEvent(QKeyEvent* event)
{
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enters || qobject_cast<QCommandLinkButton*>(focusWidget()) != nullptr)
        QDialog::keyPressEvent(event);
}

TrashlessDialog::TrashlessDialog(QWidget* parent, const std::vector<TrashlessLine>& volumes,
                                 std::function<void(Trashless)> done)
    : QDialog(parent)
{
    namespace say = desktop_text;
    setObjectName(QStringLiteral("cleanupNoTrash"));
    setWindowTitle(shown(say::noTrashTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(heading(shown(say::noTrashQuestion)));
    for (const TrashlessLine& volume : volumes) {
        auto* const line =
            wrapped(shown(say::noTrashVolume, {volume.place.toStdString(), countedItems(volume.items).toStdString(),
                                               sizeShown(volume.bytes).toStdString(), volume.reason.toStdString()}));
        line->setTextFormat(Qt::PlainText);
        layout->addWidget(line);
    }
    addAnswer("noTrashLeave", say::noTrashLeave, Trashless::leaveAlone, true);
    addAnswer("noTrashDelete", say::noTrashDelete, Trashless::deleteForGood, false);
    addAnswer("noTrashStop", say::noTrashStop, Trashless::stop, false);
    setMinimumWidth(520);
    connect(this, &QDialog::finished, this, [this, done = std::move(done)] { done(answer_); });
}

void TrashlessDialog::addAnswer(const char* name, TextId text, Trashless answer, bool isDefault)
{
    QCommandLinkButton* const button = linkButton(text, name);
    button->setDefault(isDefault);
    layout()->addWidget(button);
    connect(button, &QAbstractButton::clicked, this, [this, answer] {
        answer_ = answer;
        accept();
    });
}

}  // namespace kelvane
