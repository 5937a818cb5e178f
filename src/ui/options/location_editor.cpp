#include "ui/options/location_editor.h"

#include <QComboBox>
#include <QLabel>
#include <QVBoxLayout>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/options/options_keeper.h"

namespace kelvane {

LocationEditor::LocationEditor(OptionsKeeper& keeper) : keeper_(keeper), box_(new QComboBox), place_(new QLabel)
{
    namespace say = desktop_text;
    box_->addItems({shown(say::placeCountersOnly), shown(say::placeRegistry), shown(say::placeIniFile)});
    place_->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    place_->setTextFormat(Qt::PlainText);
    place_->setWordWrap(true);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(box_, 0, Qt::AlignLeft);
    layout->addWidget(place_);
    setFocusProxy(box_);
    connect(box_, &QComboBox::activated, this,
            [this](int index) { keeper_.moveTo(static_cast<PersistenceMode>(index)); });
}

void LocationEditor::display(const Settings& settings)
{
    box_->setCurrentIndex(static_cast<int>(settings.persistence));
    place_->setText(shown(desktop_text::placeNow, {keeper_.place().toStdString()}));
}

}  // namespace kelvane
