#include "ui/options/help_commands.h"

#include <QTimer>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/options/about_dialog.h"
#include "ui/options/guide_window.h"
#include "ui/options/keyboard_dialog.h"
#include "ui/options/tips_dialog.h"
#include "ui/options/window_dialogs.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// The makers' commands ask and wait: on the window's own thread.
std::function<void()> onWindow(WindowLink& link, void (CXApplication::*work)())
{
    return [&link, work] { link.run([work](Workbench& bench) { (bench.desktop().application().*work)(); }); };
}

void addReading(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    CommandSet& commands = parts.commands;
    commands.add({.name = "help.guide",
                  .label = say::commandGuide,
                  .menu = MenuId::help,
                  .run = [&link] { Q_EMIT link.helpWanted({}); },
                  .keys = QKeySequence(Qt::Key_F1)});
    commands.add(
        {.name = "help.keyboard", .label = say::commandKeyboard, .menu = MenuId::help, .run = [&link, &commands] {
             showDialog<KeyboardDialog>(link, commands);
         }});
    commands.add({.name = "help.tips", .label = say::commandTips, .menu = MenuId::help, .run = [&link] {
                      showDialog<TipsDialog>(link);
                  }});
}

void addMakers(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    parts.commands.add({.name = "help.feedback",
                        .label = say::commandFeedback,
                        .menu = MenuId::help,
                        .run = onWindow(link, &CXApplication::sendFeedback),
                        .beginsSection = true});
    parts.commands.add({.name = "help.crashMail",
                        .label = say::commandCrashMail,
                        .menu = MenuId::help,
                        .run = onWindow(link, &CXApplication::sendCrashMail)});
    parts.commands.add({.name = "help.updates",
                        .label = say::commandUpdates,
                        .menu = MenuId::help,
                        .run = onWindow(link, &CXApplication::lookForUpdates)});
    parts.commands.add({.name = "help.about",
                        .label = say::commandAbout,
                        .menu = MenuId::help,
                        .run = [&link] { showDialog<AboutDialog>(link); },
                        .beginsSection = true});
}

// Neither on the very first start, which has a question of its own, nor over something that was asked for.
void showTipAtStart(WindowLink& link)
{
    const Settings settings = link.desktop().settings();
    const bool isFirstWindow = link.desktop().application().windowCount() <= 1;
    const bool beginner = (settings.flags & settings_flag::beginner) != 0;
    const CommandLine& line = link.commandLine();
    const bool isPlainStart = line.targets.empty() && !line.has(command_flag::afterCrash);
    if (settings.tipOfTheDay != 0 && settings.useCount > 1 && !beginner && isFirstWindow && isPlainStart)
        showDialog<TipsDialog>(link);
}

}  // namespace

void installHelp(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    QObject::connect(&link, &WindowLink::helpWanted, &parts.window,
                     [&link](const QString& place) { showDialog<GuideWindow>(link)->goTo(place); });
    addReading(parts);
    addMakers(parts);
    QTimer::singleShot(0, &parts.window, [&link] { showTipAtStart(link); });
}

}  // namespace kelvane
