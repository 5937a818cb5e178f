#include "ui/frame/program_look.h"

#include <QApplication>
#include <QTranslator>
#include <cstring>

#include "base/desktop_texts/frame.h"
#include "ui/core/text.h"
#include "ui/frame/icons.h"

namespace kelvane {
namespace {

struct ButtonText {
    const char* ofQt;
    TextId own;
};

constexpr ButtonText buttonTexts[] = {
    {"OK", desktop_text::boxOk},          {"&OK", desktop_text::boxOk},
    {"&Yes", desktop_text::boxYes},       {"&No", desktop_text::boxNo},
    {"Cancel", desktop_text::boxCancel},  {"Close", desktop_text::boxClose},
    {"Save", desktop_text::boxSave},      {"Open", desktop_text::boxOpen},
    {"Apply", desktop_text::boxApply},    {"Reset", desktop_text::boxReset},
    {"Help", desktop_text::boxHelp},      {"Restore Defaults", desktop_text::boxDefaults},
    {"Discard", desktop_text::boxDiscard}};

// Qt's own translations are files that need not be installed; its buttons are the few words that matter.
class ButtonTranslator final : public QTranslator {
public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        if (std::strcmp(context, "QPlatformTheme") == 0)
            for (const ButtonText& button : buttonTexts)
                if (std::strcmp(button.ofQt, source) == 0)
                    return shown(button.own);
        return {};
    }
};

}  // namespace

void prepareLook()
{
    QApplication::setApplicationName(QStringLiteral("Kelvane"));
    QGuiApplication::setDesktopFileName(QStringLiteral(KELVANE_DESKTOP_FILE));
    QApplication::setWindowIcon(programIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::installTranslator(new ButtonTranslator(qApp));
}

}  // namespace kelvane
