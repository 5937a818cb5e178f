#include "ui/clean/items_dialog.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/clean/boxes.h"
#include "ui/clean/text_table_model.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

QTreeView* makeTable(TextTableModel& model, const QString& title)
{
    auto* const table = new QTreeView;
    table->setObjectName(QStringLiteral("itemsTable"));
    table->setAccessibleName(title);
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAlternatingRowColors(true);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setModel(&model);
    table->header()->resizeSection(0, 380);
    return table;
}

QDialogButtonBox* makeButtons(QDialog& dialog, const TextTableModel& model)
{
    auto* const buttons = new QDialogButtonBox(&dialog);  // a default button needs its dialog
    QPushButton* const copy = buttons->addButton(shown(desktop_text::copyAll), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("itemsCopy"));
    QObject::connect(copy, &QPushButton::clicked, &model,
                     [&model] { QGuiApplication::clipboard()->setText(model.asText()); });
    QPushButton* const close = buttons->addButton(shown(desktop_text::closeDialog), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("itemsClose"));
    close->setDefault(true);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

}  // namespace

void openItems(const WindowLink& link, ItemsSpec spec)
{
    auto* const dialog = new QDialog(topOf(link));
    dialog->setObjectName(QString::fromLatin1(spec.name));
    dialog->setWindowTitle(spec.title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* const model = new TextTableModel({shown(desktop_text::staysFile), shown(desktop_text::staysReason)}, dialog);
    model->setRows(std::move(spec.rows));
    auto* const text = new QLabel(spec.text);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    auto* const layout = new QVBoxLayout(dialog);
    layout->addWidget(text);
    layout->addWidget(makeTable(*model, spec.title));
    layout->addWidget(makeButtons(*dialog, *model));
    dialog->resize(760, 380);
    dialog->open();
}

}  // namespace kelvane
