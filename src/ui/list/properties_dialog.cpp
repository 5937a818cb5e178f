// What is known of one file, in a dialog.
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "base/desktop_texts/list.h"
#include "platform/native_text.h"
#include "ui/core/property_titles.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/item_commands.h"
#include "ui/list/list_columns.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

struct ItemFacts {
    QString name;
    std::vector<std::pair<QString, QString>> rows;
};

ItemFacts factsOf(Workbench& bench, ItemId id)
{
    ItemFacts facts;
    if (bench.session() == nullptr)
        return facts;
    ItemContext& file = bench.results().file(id);
    const PropertySource& source = bench.session()->access.source;
    facts.name = shownInOneLine(toQt(displayFromNative(file.item().name())));
    std::vector<PropRef> properties;
    for (const char* const name : {"System.FileName", "System.ItemFolderPathDisplay", "System.ItemTypeText",
                                   "System.Size", "System.DateModified", "System.DateCreated", "System.DateAccessed",
                                   "System.FileOwner", "Stock.FileAttributes", "Stock.HardLinks"})
        properties.push_back(source.catalogue().byName(name));
    for (const PropRef& column : columnsInView(bench))
        if (std::find(properties.begin(), properties.end(), column) == properties.end())
            properties.push_back(column);
    for (const PropRef& property : properties) {
        const QString value = property ? shownInOneLine(shownCell(file, property, source)) : QString();
        if (!value.isEmpty())
            facts.rows.emplace_back(propertyTitle(property), value);
    }
    return facts;
}

void showFacts(WindowLink& link, const ItemFacts& facts)
{
    auto* const dialog = new QDialog(link.frame());
    dialog->setObjectName(QStringLiteral("propertiesDialog"));
    dialog->setWindowTitle(shown(say::listPropertiesTitle, {facts.name.toStdString()}));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* const tree = new QTreeWidget(dialog);
    tree->setObjectName(QStringLiteral("propertiesList"));
    tree->setAccessibleName(dialog->windowTitle());
    tree->setHeaderLabels({shown(say::listPropertyName), shown(say::listPropertyValue)});
    tree->setRootIsDecorated(false);
    tree->setAlternatingRowColors(true);
    for (const auto& [name, value] : facts.rows)
        new QTreeWidgetItem(tree, {name, value});
    tree->resizeColumnToContents(0);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto* const column = new QVBoxLayout(dialog);
    column->addWidget(tree);
    column->addWidget(buttons);
    dialog->resize(560, 380);
    link.boxes().open(dialog);
}

}  // namespace

void showProperties(WindowLink& link, ItemId item)
{
    link.fetchOfList(
        &link, [item](Workbench& bench) { return factsOf(bench, item); },
        [&link](const ItemFacts& facts) { showFacts(link, facts); });
}

}  // namespace kelvane
