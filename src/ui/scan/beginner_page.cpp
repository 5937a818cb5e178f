#include "ui/scan/beginner_page.h"

#include <QButtonGroup>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QIcon>
#include <QMimeData>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>

#include "base/desktop_texts/scan.h"
#include "platform/native_text.h"
#include "ui/core/desktop.h"
#include "ui/core/local_path.h"
#include "ui/core/text.h"
#include "ui/core/wrapped_label.h"
#include "ui/frame/icons.h"
#include "ui/frame/theme.h"

namespace kelvane {
namespace {

struct Choice {
    const char* name;
    TextId label;
    Category category;
    QStandardPaths::StandardLocation place;
};

constexpr std::array choices = {
    Choice{"express.pictures", desktop_text::expressPictures, Category::images, QStandardPaths::PicturesLocation},
    Choice{"express.music", desktop_text::expressMusic, Category::audio, QStandardPaths::MusicLocation},
    Choice{"express.documents", desktop_text::expressDocuments, Category::documents, QStandardPaths::DocumentsLocation},
    Choice{"express.everything", desktop_text::expressEverything, Category::custom, QStandardPaths::HomeLocation},
};
constexpr int everything = 3;
constexpr QSize leastChoice{110, 84};
constexpr QSize iconSize{40, 40};
constexpr int leastFind = 48;

QToolButton* makeChoice(const Choice& choice)
{
    auto* const button = new QToolButton;
    button->setObjectName(QString::fromLatin1(choice.name));
    button->setText(shown(choice.label));
    button->setCheckable(true);
    button->setMinimumSize(leastChoice);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setIconSize(iconSize);
    QFont font = button->font();
    font.setPointSizeF(font.pointSizeF() * 1.2);
    button->setFont(font);
    return button;
}

QLabel* wrappedLabel(const QString& text, const char* name)
{
    auto* const label = new WrappedLabel(name);
    label->setText(text);
    return label;
}

}  // namespace

BeginnerPage::BeginnerPage(const Desktop& desktop, QWidget* parent)
    : QWidget(parent),
      desktop_(desktop),
      choices_(new QButtonGroup(this)),
      where_(wrappedLabel({}, "express.where")),
      problem_(wrappedLabel({}, "express.problem"))
{
    setObjectName(QStringLiteral("scan.express"));
    setAcceptDrops(true);
    makeWarning(*problem_);
    auto* const own = new QPushButton(shown(desktop_text::expressFolder));
    own->setObjectName(QStringLiteral("express.folder"));
    connect(own, &QPushButton::clicked, this, &BeginnerPage::chooseFolder);
    auto* const find = new QPushButton(shown(desktop_text::scanFind));
    find->setObjectName(QStringLiteral("express.find"));
    find->setMinimumHeight(leastFind);
    connect(find, &QPushButton::clicked, this, &BeginnerPage::findWanted);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(wrappedLabel(shown(desktop_text::expressHeading), "express.heading"));
    layout->addWidget(makeChoices());
    layout->addWidget(own);
    layout->addWidget(where_);
    layout->addWidget(problem_);
    layout->addWidget(find);
    layout->addWidget(wrappedLabel(shown(desktop_text::expressNote), "express.note"));
    layout->addStretch();
    choices_->button(everything)->setChecked(true);
    renewIcons();
    refresh();
}

QWidget* BeginnerPage::makeChoices()
{
    auto* const grid = new QWidget;
    auto* const layout = new QGridLayout(grid);
    layout->setContentsMargins({});
    for (int index = 0; index < static_cast<int>(choices.size()); ++index) {
        QToolButton* const button = makeChoice(choices[static_cast<std::size_t>(index)]);
        choices_->addButton(button, index);
        layout->addWidget(button, index / 2, index % 2);
    }
    connect(choices_, &QButtonGroup::idClicked, this, &BeginnerPage::refresh);
    return grid;
}

ScanOrder BeginnerPage::order() const
{
    const auto& choice = choices[static_cast<std::size_t>(choices_->checkedId())];
    ScanOrder order;
    order.definition.setCategory(choice.category);
    order.definition.set(scan_flag::contents, true);
    order.definition.set(scan_flag::sameType | scan_flag::ignoreSmall, false);
    order.definition.roots = desktop_.platform().paths().joinRoots(folders());
    return order;
}

void BeginnerPage::showProblem(const QString& problem)
{
    problem_->setText(problem);
    problem_->setVisible(!problem.isEmpty());
}

void BeginnerPage::chooseFolder()
{
    auto* const dialog = new QFileDialog(window(), shown(desktop_text::foldersChoose));
    dialog->setObjectName(QStringLiteral("scan.chooseFolder"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& chosen) { setFolders({bytesOfPath(chosen)}); });
    dialog->open();
}

void BeginnerPage::setFolders(std::vector<std::string> folders)
{
    ownFolders_ = std::move(folders);
    refresh();
}

void BeginnerPage::refresh()
{
    QStringList lines;
    for (const std::string& folder : folders())
        lines.append(toQt(displayFromNative(nativeFromBytes(folder))));
    where_->setText(shown(desktop_text::expressWhere, {lines.join(u'\n').toStdString()}));
    showProblem({});
}

std::vector<std::string> BeginnerPage::folders() const
{
    if (!ownFolders_.empty())
        return ownFolders_;
    const auto place = choices[static_cast<std::size_t>(choices_->checkedId())].place;
    return {bytesOfPath(QStandardPaths::writableLocation(place))};
}

void BeginnerPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        renewIcons();
}

void BeginnerPage::renewIcons()
{
    for (QAbstractButton* const button : choices_->buttons())
        button->setIcon(commandIcon(button->objectName()));
}

void BeginnerPage::dragEnterEvent(QDragEnterEvent* event)
{
    if (!localFiles(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void BeginnerPage::dropEvent(QDropEvent* event)
{
    std::vector<std::string> dropped;
    for (const std::filesystem::path& folder : localFiles(*event->mimeData()))
        dropped.push_back(bytesFromNative(folder.native()));
    if (!dropped.empty())
        setFolders(std::move(dropped));
    event->acceptProposedAction();
}

}  // namespace kelvane
