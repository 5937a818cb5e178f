#include "ui/scan/named_sets.h"

#include <QMenu>
#include <algorithm>
#include <utility>

#include "app/settings_lists.h"
#include "base/desktop_texts/scan.h"
#include "ui/core/desktop.h"
#include "ui/core/text.h"
#include "ui/scan/name_question.h"

namespace kelvane {
namespace {

// A name is no place for the mark of a key.
QString menuText(const std::u16string& name)
{
    return toQt(name).replace(u'&', QStringLiteral("&&"));
}

}  // namespace

NamedSetsButton::NamedSetsButton(const Desktop& desktop, List list, TextId label,
                                 std::function<std::u16string()> current, QWidget* parent)
    : QPushButton(parent), desktop_(desktop), list_(list), current_(std::move(current))
{
    setText(shown(label));
    setAutoDefault(false);  // Enter in a dialog means its OK
    auto* const menu = new QMenu(this);
    setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, &NamedSetsButton::fill);
    fill();
}

void NamedSetsButton::fill()
{
    const Settings settings = desktop_.settings();
    const std::vector<NamedText>& sets = settings.*list_;
    menu()->clear();
    for (const NamedText& set : sets)
        connect(menu()->addAction(menuText(set.name)), &QAction::triggered, this,
                [this, text = set.text] { Q_EMIT chosen(text); });
    if (sets.empty())
        menu()->addAction(shown(desktop_text::setsNone))->setEnabled(false);
    menu()->addSeparator();
    connect(menu()->addAction(shown(desktop_text::setSaveAs)), &QAction::triggered, this, &NamedSetsButton::askToSave);
    fillDeletions(*menu()->addMenu(shown(desktop_text::setDelete)), sets);
}

void NamedSetsButton::fillDeletions(QMenu& deletions, const std::vector<NamedText>& sets)
{
    deletions.setEnabled(!sets.empty());
    for (const NamedText& set : sets)
        connect(deletions.addAction(menuText(set.name)), &QAction::triggered, this, [this, name = set.name] {
            desktop_.change([&](Settings& settings) {
                std::erase_if(settings.*list_, [&](const NamedText& each) { return each.name == name; });
            });
        });
}

void NamedSetsButton::askToSave()
{
    askName(*this, {text().remove(u'&'), shown(desktop_text::setNameLabel), {}, [this](const QString& name) {
                        return save(name.trimmed());
                    }});
}

QString NamedSetsButton::save(const QString& name)
{
    if (name.isEmpty())
        return shown(desktop_text::savedNoName);
    QString problem;
    desktop_.change([&](Settings& settings) {
        std::vector<NamedText>& sets = settings.*list_;
        const auto same =
            std::find_if(sets.begin(), sets.end(), [&](const NamedText& each) { return each.name == fromQt(name); });
        if (same != sets.end())
            same->text = current_();
        else if (sets.size() >= mostSets)
            problem = shown(desktop_text::setsFull, {std::to_string(mostSets)});
        else
            sets.push_back({fromQt(name), current_()});
    });
    return problem;
}

}  // namespace kelvane
