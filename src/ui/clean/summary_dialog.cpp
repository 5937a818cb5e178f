#include "ui/clean/summary_dialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QStyle>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr int pictureSize = 24;

// The picture stands beside the question, and not at the end of the line above it.
QString laidOut(const std::string& html)
{
    return toQt(html).replace(QStringLiteral("<img src=\"question\">\r\n<p>"),
                              QStringLiteral("<p><img src=\"question\" style=\"vertical-align: middle\">&nbsp; "));
}

QTextBrowser* makePage(const QDialog& dialog, const std::string& html, std::function<void()> help)
{
    auto* const page = new QTextBrowser;
    page->setObjectName(QStringLiteral("cleanupSummaryPage"));
    page->setAccessibleName(dialog.windowTitle());
    page->setOpenLinks(false);
    page->document()->addResource(
        QTextDocument::ImageResource, QUrl(QStringLiteral("question")),
        dialog.style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(pictureSize, pictureSize));
    page->setHtml(laidOut(html));
    QObject::connect(page, &QTextBrowser::anchorClicked, page, [help = std::move(help)] { help(); });
    return page;
}

}  // namespace

SummaryDialog::SummaryDialog(QWidget* parent, const std::string& html, std::function<void()> help,
                             std::function<void(bool)> done)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("cleanupSummary"));
    setWindowTitle(shown(TextId::cleanupSummaryTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* const go = buttons->addButton(shown(desktop_text::cleanupGo), QDialogButtonBox::AcceptRole);
    go->setObjectName(QStringLiteral("cleanupGo"));
    buttons->button(QDialogButtonBox::Cancel)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(makePage(*this, html, std::move(help)));
    layout->addWidget(buttons);
    resize(520, 420);
    buttons->button(QDialogButtonBox::Cancel)->setFocus();
    connect(this, &QDialog::finished, this, [done = std::move(done)](int result) { done(result == Accepted); });
}

}  // namespace kelvane
