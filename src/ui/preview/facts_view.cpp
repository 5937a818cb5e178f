#include "ui/preview/facts_view.h"

#include <QHeaderView>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"

namespace kelvane {

FactsView::FactsView(QWidget* parent) : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("preview.facts"));
    setAccessibleName(shown(desktop_text::previewFactsName));
    setHeaderLabels({shown(desktop_text::previewFactName), shown(desktop_text::previewFactValue)});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void FactsView::show(const std::vector<Fact>& facts)
{
    clear();
    for (const Fact& fact : facts) {
        auto* const row = new QTreeWidgetItem(this, {toQt(fact.name), toQt(fact.value)});
        row->setToolTip(1, plainTip(toQt(fact.value)));
    }
}

}  // namespace kelvane
