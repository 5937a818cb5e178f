#include "ui/preview/entries_view.h"

#include <QHeaderView>

#include "base/desktop_texts/preview.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// "2026-11-21 02:31", as the list of results has it.
QString timeText(FileTime time)
{
    return time.ticks == 0 ? QString() : toQt(toIso8601(time)).left(16).replace(QLatin1Char('T'), QLatin1Char(' '));
}

}  // namespace

EntriesView::EntriesView(QWidget* parent) : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("preview.entries"));
    setAccessibleName(shown(say::previewEntriesName));
    setHeaderLabels({shown(say::previewEntryName), shown(say::previewEntrySize), shown(say::previewEntryModified)});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
}

void EntriesView::show(const std::vector<ListedEntry>& entries)
{
    clear();
    QList<QTreeWidgetItem*> rows;
    for (const ListedEntry& entry : entries) {
        const QString size = entry.folder ? shown(say::previewFolder) : shownSize(entry.bytes);
        auto* const row = new QTreeWidgetItem({toQt(entry.name), size, timeText(entry.modified)});
        row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        rows += row;
    }
    addTopLevelItems(rows);
}

}  // namespace kelvane
