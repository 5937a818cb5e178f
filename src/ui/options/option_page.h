// One page of options, made from the table of settings.
#pragma once

#include <QScrollArea>
#include <vector>

#include "app/settings_table.h"
#include "ui/options/option_editor.h"

class QPushButton;
class QVBoxLayout;

namespace kelvane {

class OptionsKeeper;

// The keeper outlives it.
class OptionPage final : public QScrollArea {
    Q_OBJECT

public:
    OptionPage(OptionsPage page, OptionsKeeper& keeper, const SettingsContext& context);

    [[nodiscard]] OptionsPage page() const { return page_; }
    [[nodiscard]] QString title() const;
    void display(const Settings& settings);
    // Shows only what all of the words fit: in its label, its meaning, its key or the page's title, or by a word that
    // means much the same. Says whether anything is left.
    bool search(const QStringList& words);
    // A button above the options that makes one change. Takes it.
    void addButton(QPushButton* button, const SettingsChange& change);
    // Everything on the page at its default; what cannot be undone (lists of results, the place) stays.
    void reset();

private:
    struct Option {
        OptionEditor* editor;
        const SettingRow* row;  // null for a bit
        QWidget* whole;         // with label and explanation
        QString words, key;     // in lower case
    };

    void addRows(const SettingsContext& context);
    void addBits();
    void addHeading();
    void add(OptionEditor* editor, const SettingRow* row, const QString& key, TextId label, TextId meaning);
    [[nodiscard]] OptionEditor* editorOf(const SettingRow& row, const SettingsContext& context);

    const OptionsPage page_;
    OptionsKeeper& keeper_;
    QVBoxLayout* column_;
    std::vector<Option> options_;
};

// In the order in which a person sees them.
[[nodiscard]] std::span<const OptionsPage> optionPages();

}  // namespace kelvane
