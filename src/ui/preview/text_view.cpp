#include "ui/preview/text_view.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"
#include "ui/core/wrapped_label.h"

namespace kelvane {

namespace say = desktop_text;

TextView::TextView(QWidget* parent)
    : QWidget(parent),
      text_(new QPlainTextEdit(this)),
      charset_(new WrappedLabel("preview.charset", this)),
      wrap_(new QCheckBox(shown(say::previewWrap), this)),
      open_(new QPushButton(shown(say::previewOpenOther), this))
{
    text_->setObjectName(QStringLiteral("preview.text"));
    text_->setAccessibleName(shown(say::previewTextName));
    text_->setReadOnly(true);
    text_->setTabChangesFocus(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    wrap_->setObjectName(QStringLiteral("preview.wrap"));
    wrap_->setChecked(true);
    open_->setObjectName(QStringLiteral("preview.openText"));
    auto* const bar = new QHBoxLayout;
    bar->addWidget(charset_, 1);
    bar->addWidget(wrap_);
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(text_, 1);
    all->addLayout(bar);
    all->addWidget(open_);  // in one line with the others it would be wider than small screens have room for
    connect(wrap_, &QCheckBox::toggled, this,
            [this](bool on) { text_->setLineWrapMode(on ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap); });
    connect(open_, &QPushButton::clicked, this, &TextView::openWanted);
}

void TextView::show(const PreviewContent& content)
{
    const bool ownText = !content.charset.empty();
    text_->setFont(ownText ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : font());
    text_->setPlainText(toQt(content.text));
    QString line = ownText ? shown(say::previewCharset, {content.charset}) : shown(say::previewExtracted);
    if (content.cut)
        line += QStringLiteral("   ") + shown(say::previewCut);
    if (content.broken)
        line += QStringLiteral("   ") + shown(say::previewLinesBroken);
    charset_->setText(line);
}

void TextView::setOpenEnabled(bool on)
{
    open_->setEnabled(on);
}

}  // namespace kelvane
