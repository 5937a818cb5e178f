#include "support/ui/desktop_world.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <algorithm>
#include <stdexcept>

#include "app/engine_settings.h"
#include "support/fake_questions.h"
#include "support/paths.h"
#include "ui/core/main_thread.h"

namespace kelvane::testing {
namespace {

// Nothing of the world before may come to the next one.
void settleEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void fill(Workbench& bench, const std::vector<std::vector<std::filesystem::path>>& groups)
{
    Settings settings = bench.desktop().settings();
    EngineOptions options = engineOptionsFrom(settings);
    bench.beginList(std::move(settings), std::move(options));
    std::uint32_t number = 0;
    for (const auto& group : groups) {
        ++number;
        for (const auto& path : group)
            if (auto item = bench.platform().shell().parse(path.native()))
                bench.results().add(*std::move(item), number, false);
    }
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

bool PlainBoxes::eventFilter(QObject* object, QEvent* event)
{
    auto* const box = qobject_cast<QMessageBox*>(object);
    if (box == nullptr || event->type() != QEvent::Show)
        return false;
    for (const QLabel* const label : box->findChildren<QLabel*>()) {
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText)
            << box->objectName().toStdString() << ": " << label->text().toStdString();
    }
    return false;
}

DesktopWorld::DesktopWorld(const WorldPlan& plan) : kept_(plan.kept)
{
    tree.folder("temporary");
    tree.folder("files");
    tree.folder("program");
    if (plan.files)
        plan.files(tree);
    if (kept_)
        platform.settingsStore = *kept_;
    if (!plan.firstRun)
        saveFirst(plan);
    start(plan);
}

// The settings of somebody who has answered the questions of a first run already.
void DesktopWorld::saveFirst(const WorldPlan& plan)
{
    FakeQuestions nobody;
    nobody.mode = plan.mode;
    CRegistryAccess registry(settingsPorts(platform));
    registry.load(nobody);
    registry.settings().lastUpdateCheck = platform.clock().now();
    registry.settings().tipOfTheDay = 0;
    if (plan.change)
        plan.change(registry.settings());
    if (registry.save() != SettingsCode::done)
        throw std::runtime_error("the first settings could not be kept");
}

void DesktopWorld::start(const WorldPlan& plan)
{
    application_ = std::make_unique<CXApplication>(
        ApplicationPorts{platform.files(), platform.places(), platform.systemFacts(), platform.clock(),
                         platform.instancePorts(), platform.processes(), platform.crashCapture(),
                         platform.textModules(), platform.links(), *waiting_},
        settingsPorts(platform), host_, "kelvane_ui_" + bytesFromNative(tree.path().filename().native()));
    desktop_.setApplication(*application_);
    application_->setWake([this] {
        postToMain([this] {
            if (application_ && !over_ && !application_->dispatchWaiting())
                over_ = true;
        });
    });
    std::vector<std::string> words{"kelvane"};
    words.insert(words.end(), plan.words.begin(), plan.words.end());
    if (application_->start(commandTextFromWords(std::move(words), tree.path()), 1))
        throw std::runtime_error("the program ended at its start");
    if (!waitUntil([this] { return !windows().empty(); }))
        throw std::runtime_error("no window came up");
    window_ = windows().front();
}

DesktopWorld::~DesktopWorld()
{
    for (MainWindow* const window : windows())
        window->link().cancelJob();
    application_->post(CloseAllWindows{});
    const bool ended = waitUntil([this] { return over_; });
    if (!ended)
        qFatal("A window did not close");  // its thread would go on in what is destroyed here
    application_->shutDown();
    desktop_.awaitFinished();
    settleEvents();
    if (kept_)
        *kept_ = platform.settingsStore;
    application_.reset();
    settleEvents();
}

std::vector<MainWindow*> DesktopWorld::windows()
{
    std::vector<MainWindow*> found;
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const window = qobject_cast<MainWindow*>(widget); window != nullptr && window->isVisible())
            found.push_back(window);
    return found;
}

MainWindow& DesktopWorld::openWindow()
{
    const auto before = windows();
    const auto newOne = [&before]() -> MainWindow* {
        for (MainWindow* const window : windows())
            if (std::find(before.begin(), before.end(), window) == before.end())
                return window;
        return nullptr;
    };
    trigger("file.newWindow");
    if (!waitUntil([&] { return newOne() != nullptr; }))
        throw std::runtime_error("no further window came up");
    window_ = newOne();
    return *window_;
}

void DesktopWorld::closeWindow(MainWindow& window)
{
    const QPointer<MainWindow> gone(&window);
    window.link().requestClose();
    if (!waitUntil([&] { return gone.isNull(); }))
        throw std::runtime_error("a window did not close");
    if (window_ == &window)
        window_ = windows().empty() ? nullptr : windows().front();
}

bool DesktopWorld::trigger(const char* name) const
{
    auto* const action = find<QAction>(name);
    if (action == nullptr || !action->isEnabled())
        return false;
    action->trigger();
    return true;
}

void DesktopWorld::loadList(const std::vector<std::vector<std::string>>& groups, const std::string& contents)
{
    std::vector<std::vector<std::filesystem::path>> paths;
    for (const auto& group : groups) {
        paths.emplace_back();
        for (const std::string& name : group)
            paths.back().push_back(tree.write("files/" + name, contents));
    }
    onWindowThread([&](Workbench& bench) { fill(bench, paths); });
}

void DesktopWorld::onWindowThread(const std::function<void(Workbench&)>& work)
{
    // Shared: a test that gave up may be gone when the work is done at last.
    const auto done = std::make_shared<bool>(false);
    link().run([work, done](Workbench& bench) {
        work(bench);
        bench.toMain([done](WindowLink&) { *done = true; });
    });
    if (!waitUntil([&] { return *done; }))
        throw std::runtime_error("the window's thread did not come to its work");
}

}  // namespace kelvane::testing
