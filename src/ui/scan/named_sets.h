// A button with a menu of named sets: to take one, to save what is there as another, to delete one.
#pragma once

#include <QPushButton>
#include <functional>
#include <vector>

#include "app/settings.h"
#include "base/text_table.h"

namespace kelvane {

class Desktop;

class NamedSetsButton final : public QPushButton {
    Q_OBJECT

public:
    using List = std::vector<NamedText> Settings::*;

    // current: the text that "Save as" keeps. The desktop outlives the button.
    NamedSetsButton(const Desktop& desktop, List list, TextId label, std::function<std::u16string()> current,
                    QWidget* parent = nullptr);

Q_SIGNALS:
    void chosen(const std::u16string& text);

private:
    void fill();
    void fillDeletions(QMenu& menu, const std::vector<NamedText>& sets);
    void askToSave();
    [[nodiscard]] QString save(const QString& name);

    const Desktop& desktop_;
    const List list_;
    const std::function<std::u16string()> current_;
};

}  // namespace kelvane
