#include "ui/options/option_page.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/options/location_editor.h"
#include "ui/options/make_editor.h"
#include "ui/options/options_keeper.h"
#include "ui/options/searched_word.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int labelWidth = 190;

constexpr OptionsPage pages[] = {OptionsPage::general,   OptionsPage::view,       OptionsPage::scanning,
                                 OptionsPage::comparing, OptionsPage::cleanUp,    OptionsPage::textExtraction,
                                 OptionsPage::notices,   OptionsPage::bookkeeping};

struct PageTexts {
    TextId title, about;
};

PageTexts textsOf(OptionsPage page)
{
    switch (page) {
    case OptionsPage::general:
        return {say::pageGeneral, say::aboutPageGeneral};
    case OptionsPage::view:
        return {say::pageView, say::aboutPageView};
    case OptionsPage::scanning:
        return {say::pageScanning, say::aboutPageScanning};
    case OptionsPage::comparing:
        return {say::pageComparing, say::aboutPageComparing};
    case OptionsPage::textExtraction:
        return {say::pageTextExtraction, say::aboutPageTextExtraction};
    case OptionsPage::cleanUp:
        return {say::pageCleanUp, say::aboutPageCleanUp};
    case OptionsPage::notices:
        return {say::pageNotices, say::aboutPageNotices};
    case OptionsPage::bookkeeping:
        break;
    }
    return {say::pageBookkeeping, say::aboutPageBookkeeping};
}

QLabel* wrapped(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

QLabel* explanation(const QString& text)
{
    QLabel* const label = wrapped(text);
    QFont smaller = label->font();
    smaller.setPointSizeF(smaller.pointSizeF() * 0.9);
    label->setFont(smaller);
    return label;
}

// Every control of an editor says what it is for.
void nameControls(OptionEditor& editor, const QString& label, const QString& meaning)
{
    for (QWidget* const control : editor.findChildren<QWidget*>()) {
        if (control->focusPolicy() == Qt::NoFocus || !control->accessibleName().isEmpty())
            continue;
        if (qobject_cast<QPushButton*>(control) == nullptr)  // whose own text is its name
            control->setAccessibleName(label);
        control->setAccessibleDescription(meaning);
    }
}

QWidget* framed(OptionEditor* editor, const QString& label, const QString& meaning)
{
    auto* const whole = new QWidget;
    auto* const grid = new QGridLayout(whole);
    grid->setContentsMargins(0, 4, 0, 8);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    const int first = editor->hasOwnLabel() || editor->isLarge() ? 0 : 1;
    if (!editor->hasOwnLabel()) {
        QLabel* const name = wrapped(label);
        name->setBuddy(editor);
        if (!editor->isLarge())
            name->setFixedWidth(labelWidth);  // editors stand in one line below one another
        grid->addWidget(name, 0, 0, 1, editor->isLarge() ? 2 : 1, Qt::AlignTop);
    }
    grid->addWidget(editor, editor->isLarge() ? 2 : 0, first, 1, 2 - first);
    if (!meaning.isEmpty() && meaning != label)
        grid->addWidget(explanation(meaning), 1, first, 1, 2 - first);
    return whole;
}

}  // namespace

std::span<const OptionsPage> optionPages()
{
    return pages;
}

OptionPage::OptionPage(OptionsPage page, OptionsKeeper& keeper, const SettingsContext& context)
    : page_(page), keeper_(keeper)
{
    auto* const content = new QWidget;
    column_ = new QVBoxLayout(content);
    addHeading();
    addRows(context);
    addBits();
    column_->addStretch();
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);  // nothing would show that it is the page that has the keyboard
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(title());
}

QString OptionPage::title() const
{
    return shown(textsOf(page_).title);
}

void OptionPage::addHeading()
{
    QLabel* const heading = wrapped(title());
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    heading->setFont(font);
    column_->addWidget(heading);
    column_->addWidget(wrapped(shown(textsOf(page_).about)));
    column_->addSpacing(8);
}

OptionEditor* OptionPage::editorOf(const SettingRow& row, const SettingsContext& context)
{
    return row.key == persistenceKey ? new LocationEditor(keeper_) : makeEditor(row, context);
}

void OptionPage::addRows(const SettingsContext& context)
{
    if (page_ == OptionsPage::general)
        add(makeInterfaceModeEditor(), nullptr, QStringLiteral("interfaceMode"), say::labelInterfaceMode,
            say::aboutInterfaceMode);
    for (const SettingRow& row : settingsTable()) {
        if (row.page == page_)
            add(editorOf(row, context), &row, toQt(row.key), row.label != TextId{} ? row.label : row.meaning,
                row.meaning);
    }
}

void OptionPage::addBits()
{
    for (const SettingBit& bit : settingBits()) {
        if (bit.page == page_)
            add(makeEditor(bit), nullptr, toQt(bit.key) + QStringLiteral(":%1").arg(bit.bit, 0, 16), bit.label,
                bit.label);
    }
}

void OptionPage::add(OptionEditor* editor, const SettingRow* row, const QString& key, TextId label, TextId meaning)
{
    const QString name = shown(label), about = shown(meaning);
    editor->setObjectName(key);
    editor->setToolTip(key);
    nameControls(*editor, name, about);
    connect(editor, &OptionEditor::edited, this,
            [this, row](const SettingsChange& change) { keeper_.change(row, change); });
    // The numbers that its meaning explains are the words of its list.
    const bool saysItself = row != nullptr && row->key == persistenceKey;
    QWidget* const whole = framed(editor, name, saysItself ? QString() : about);
    column_->addWidget(whole);
    options_.push_back({editor, row, whole, (title() + u' ' + name + u' ' + about).toLower(), key.toLower()});
}

void OptionPage::addButton(QPushButton* button, const SettingsChange& change)
{
    constexpr int belowHeading = 2;
    column_->insertWidget(belowHeading, button, 0, Qt::AlignLeft);
    connect(button, &QPushButton::clicked, this, [this, change] { keeper_.change(nullptr, change); });
}

void OptionPage::display(const Settings& settings)
{
    for (const Option& option : options_)
        option.editor->display(settings);
}

bool OptionPage::search(const QStringList& words)
{
    std::vector<SearchedWord> searched;
    for (const QString& word : words)
        searched.emplace_back(word);
    bool any = false;
    for (const Option& option : options_) {
        const bool fits = std::all_of(searched.begin(), searched.end(), [&](const SearchedWord& word) {
            return option.key.contains(word.typed()) || word.fits(option.words);
        });
        option.whole->setVisible(fits);
        any = any || fits;
    }
    return any;
}

void OptionPage::reset()
{
    const Settings defaults = keeper_.defaults();
    for (const Option& option : options_)
        keeper_.change(option.row, [&](Settings& settings) { option.editor->copy(defaults, settings); });
}

}  // namespace kelvane
