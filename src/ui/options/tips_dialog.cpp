#include "ui/options/tips_dialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr TextId tips[] = {say::tipKept,     say::tipUndo,        say::tipLinks,     say::tipNotDuplicates,
                           say::tipPictures, say::tipMusic,       say::tipDocuments, say::tipSave,
                           say::tipCache,    say::tipApproximate, say::tipKeyboard,  say::tipOptions,
                           say::tipConsole,  say::tipProtected};

}  // namespace

TipsDialog::TipsDialog(WindowLink& link) : QDialog(link.frame()), link_(link), tip_(new QLabel), number_(new QLabel)
{
    setObjectName(QStringLiteral("tipsDialog"));
    setWindowTitle(shown(say::tipsTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedWidth(520);
    tip_->setObjectName(QStringLiteral("tipText"));
    tip_->setWordWrap(true);
    tip_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    tip_->setMinimumHeight(110);
    tip_->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    QFont larger = tip_->font();
    larger.setPointSizeF(larger.pointSizeF() * 1.15);
    tip_->setFont(larger);
    auto* const layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(number_);
    layout->addWidget(tip_, 1);
    layout->addWidget(makeButtons());
    next_->setDefault(true);  // not before it is in the dialog
    next_->setFocus();
    at_ = static_cast<int>(link.desktop().settings().useCount % static_cast<unsigned>(count()));
    step(0);
}

int TipsDialog::count()
{
    return static_cast<int>(std::size(tips));
}

QWidget* TipsDialog::makeButtons()
{
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const atStart = new QCheckBox(shown(say::tipsAtStart));
    atStart->setObjectName(QStringLiteral("tipsAtStart"));
    atStart->setChecked(link_.desktop().settings().tipOfTheDay != 0);
    connect(atStart, &QCheckBox::toggled, this, [this](bool on) {
        link_.desktop().change([on](Settings& settings) { settings.tipOfTheDay = on ? 1 : 0; });
        Q_EMIT link_.optionsChanged();
    });
    const auto add = [&](const char* name, TextId label, auto work) {
        auto* const button = new QPushButton(shown(label));
        button->setObjectName(QString::fromLatin1(name));
        connect(button, &QPushButton::clicked, this, work);
        layout->addWidget(button);
        return button;
    };
    layout->addWidget(atStart);
    layout->addStretch();
    add("tipPrevious", say::buttonPrevious, [this] { step(-1); });
    next_ = add("tipNext", say::buttonNext, [this] { step(1); });
    add("tipClose", say::buttonClose, [this] { close(); });
    return row;
}

void TipsDialog::step(int by)
{
    at_ = (at_ + by + count()) % count();
    tip_->setText(shown(tips[at_]));
    number_->setText(shown(say::tipNumber, {std::to_string(at_ + 1), std::to_string(count())}));
}

}  // namespace kelvane
