#include <QApplication>
#include <QCommandLinkButton>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include "platform/native_text.h"
#include "support/ui/desktop_world.h"
#include "ui/frame/commands.h"
#include "ui/scan/folder_list.h"

namespace kelvane::testing {
namespace {

// Answers the question of the first run, which has a loop of its own, as soon as it is there.
class FirstRunPerson {
public:
    explicit FirstRunPerson(std::function<void(QDialog&)> answer)
    {
        QObject::connect(&timer_, &QTimer::timeout, [this, answer = std::move(answer)] {
            auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || dialog->objectName() != QStringLiteral("modeDialog"))
                return;
            timer_.stop();
            ++asked;
            answer(*dialog);
        });
        timer_.start(10);
    }

    int asked = 0;

private:
    QTimer timer_;
};

std::uint32_t modeFlags(DesktopWorld& world)
{
    return world.desktop().settings().flags &
           (settings_flag::beginner | settings_flag::advanced | settings_flag::safeOptions | settings_flag::expert);
}

TEST(FrameFirstRun, AsksOnceHowMuchIsShown)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    FirstRunPerson person([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("User interface selection"));
        auto* const beginner = dialog.findChild<QCommandLinkButton*>(QStringLiteral("beginner"));
        EXPECT_EQ(beginner->text(), QStringLiteral("Beginner mode"));
        EXPECT_EQ(beginner->description(), QStringLiteral("Express UI with fixed scan settings"));
        beginner->click();
    });
    {
        DesktopWorld world({.kept = kept, .firstRun = true});
        EXPECT_EQ(person.asked, 1);
        EXPECT_EQ(modeFlags(world), settings_flag::beginner | settings_flag::safeOptions);
        EXPECT_EQ(world.window().commands().mode(), InterfaceMode::beginner);
    }
    DesktopWorld world({.kept = kept, .firstRun = true});
    EXPECT_EQ(world.window().commands().mode(), InterfaceMode::beginner);
}

TEST(FrameFirstRun, TakesEnterAndEscapeForTheSafeChoice)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        FirstRunPerson person([key](QDialog& dialog) { QTest::keyClick(&dialog, key); });
        DesktopWorld world({.firstRun = true});
        EXPECT_EQ(person.asked, 1);
        EXPECT_EQ(modeFlags(world), settings_flag::safeOptions);
    }
}

// Hears what windows ask for from the moment they are shown.
class NewWindows final : public QObject {
public:
    NewWindows() { qApp->installEventFilter(this); }

    std::vector<std::pair<std::string, std::vector<std::filesystem::path>>> asked;

private:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto* const window = qobject_cast<MainWindow*>(object);
        if (window != nullptr && event->type() == QEvent::Show) {
            connect(&window->link(), &WindowLink::foldersRequested, this,
                    [this](const auto& paths) { asked.emplace_back("folder", paths); });
            connect(&window->link(), &WindowLink::openRequested, this,
                    [this](const auto& path) { asked.emplace_back("file", std::vector{path}); });
        }
        return false;
    }
};

bool searches(const std::filesystem::path& folder)
{
    for (const MainWindow* const window : DesktopWorld::windows()) {
        const auto folders = window->findChild<FolderList*>()->included();
        if (std::find(folders.begin(), folders.end(), bytesFromNative(folder.native())) != folders.end())
            return true;
    }
    return false;
}

TEST(FrameStart, TakesFoldersAsThoseToSearchAndAFileAsASavedScan)
{
    DesktopWorld world;
    world.tree.write("scan.ikvs", "no such thing");
    world.tree.folder("more");
    for (const std::string target : {"files", "scan.ikvs"}) {
        NewWindows windows;
        CommandLine line;
        line.targets = {world.tree.path(target)};
        if (target == "files")
            line.targets.push_back(world.tree.path("more"));
        world.application().post(OpenWindow{line});
        ASSERT_TRUE(waitUntil([&] { return !windows.asked.empty(); }));
        EXPECT_EQ(windows.asked.front().first, target == "files" ? "folder" : "file");
        EXPECT_EQ(windows.asked.front().second, line.targets);
        if (target == "files") {
            for (const auto& folder : line.targets)
                EXPECT_TRUE(waitUntil([&] { return searches(folder); })) << "the scan's pane has the folder";
        }
    }
}

}  // namespace
}  // namespace kelvane::testing
