#include "ui/options/about_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QLibraryInfo>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

#include "app/version_info.h"
#include "base/desktop_texts/options.h"
#include "platform/library_versions.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QLabel* selectable(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

QLabel* heading()
{
    auto* const label = new QLabel(QStringLiteral("Kelvane"));
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    label->setFont(font);
    return label;
}

}  // namespace

QString aboutLines()
{
    QStringList lines;
    lines << shown(say::aboutVersion, {toQt(CAppVersionInfo::versionText()).toStdString()});
    lines << shown(say::aboutSystem) + QStringLiteral(": ") + QSysInfo::prettyProductName() + QStringLiteral(", ") +
                 QSysInfo::kernelType() + u' ' + QSysInfo::kernelVersion();
    lines << shown(say::aboutBuiltWith) + QStringLiteral(": Qt ") + QLibraryInfo::version().toString() +
                 QStringLiteral(" (") + QApplication::platformName() + u')';
    for (const LibraryVersion& library : libraryVersions())
        lines.last() += QStringLiteral(", ") + QString::fromStdString(library.name + ' ' + library.version);
    return lines.join(u'\n');
}

AboutDialog::AboutDialog(WindowLink& link) : QDialog(link.frame())
{
    setObjectName(QStringLiteral("aboutDialog"));
    setWindowTitle(shown(say::aboutTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedWidth(480);
    const QString lines = aboutLines();
    auto* const copy = new QPushButton(shown(say::aboutCopy));
    auto* const close = new QPushButton(shown(say::buttonClose));
    connect(copy, &QPushButton::clicked, this, [lines] { QApplication::clipboard()->setText(lines); });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(copy);
    buttons->addStretch();
    buttons->addWidget(close);
    QLabel* const facts = selectable(lines);
    facts->setObjectName(QStringLiteral("aboutLines"));
    auto* const layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(heading());
    layout->addWidget(selectable(shown(say::aboutWhat)));
    layout->addWidget(facts);
    layout->addLayout(buttons);
    close->setDefault(true);  // not before it is in the dialog
    close->setFocus();
}

}  // namespace kelvane
