#include "ui/scan/category_box.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>

#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr int allFiles = static_cast<int>(Category::custom);
constexpr int ownMasks = allFiles + 1;  // a choice of this box, no category: custom with masks in the definition

}  // namespace

CategoryBox::CategoryBox(QWidget* parent)
    : QGroupBox(shown(desktop_text::filesHeading), parent), category_(new QComboBox(this)), masks_(new QLineEdit(this))
{
    category_->setObjectName(QStringLiteral("scan.category"));
    masks_->setObjectName(QStringLiteral("scan.masks"));
    masks_->setPlaceholderText(shown(desktop_text::masksHint));
    auto* const layout = new QFormLayout(this);
    layout->addRow(shown(desktop_text::categoryLabel), category_);
    layout->addRow(shown(desktop_text::masksLabel), masks_);
    setCategories(defaultCategories());
    connect(category_, &QComboBox::currentIndexChanged, this, [this] {
        refresh();
        Q_EMIT edited();
    });
    connect(masks_, &QLineEdit::textEdited, this, [this](const QString& text) {
        ownMasks_ = text;
        Q_EMIT edited();
    });
}

void CategoryBox::setCategories(const std::vector<FileCategory>& categories)
{
    const QSignalBlocker quiet(category_);
    const int chosen = std::max(category_->currentIndex(), 0);
    categories_ = categories;
    category_->clear();
    for (std::size_t index = 0; index <= static_cast<std::size_t>(allFiles) && index < categories.size(); ++index)
        category_->addItem(toQt(categories[index].name));
    category_->addItem(shown(desktop_text::categoryOwnMasks));
    category_->setCurrentIndex(std::min(chosen, category_->count() - 1));
    refresh();
}

void CategoryBox::show(const CScanNode& definition)
{
    const QSignalBlocker quiet(category_);
    ownMasks_ = toQt(definition.masks);
    const bool own = definition.masks.size() > 1;
    category_->setCurrentIndex(own ? ownMasks : std::min(static_cast<int>(definition.category()), allFiles));
    refresh();
    Q_EMIT edited();
}

void CategoryBox::read(CScanNode& definition) const
{
    definition.setCategory(static_cast<Category>(std::min(category_->currentIndex(), allFiles)));
    definition.masks = hasOwnMasks() ? ownMasks_.simplified().remove(u' ').toStdString() : std::string();
}

void CategoryBox::refresh()
{
    const auto index = static_cast<std::size_t>(std::max(category_->currentIndex(), 0));
    masks_->setReadOnly(!hasOwnMasks());
    masks_->setText(hasOwnMasks() ? ownMasks_ : toQt(index < categories_.size() ? categories_[index].masks : ""));
    masks_->setCursorPosition(0);
}

bool CategoryBox::hasOwnMasks() const
{
    return category_->currentIndex() == ownMasks;
}

}  // namespace kelvane
