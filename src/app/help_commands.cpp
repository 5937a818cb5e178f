// What the application object does to help its makers; every step on the thread of a window.
#include "app/cx_application.h"
#include "app/feedback_mail.h"
#include "app/notices.h"
#include "app/update_check.h"

namespace kelvane {
namespace {

class ProbeOfAll final : public WindowProbe {
public:
    explicit ProbeOfAll(CXApplication& application) : application_(application) {}

    // A main thread that does not even list the windows hangs like one of them.
    bool someWindowHangs(std::chrono::milliseconds patience) override
    {
        const auto windows = application_.windows(patience);
        return !windows || std::any_of(windows->begin(), windows->end(), [patience](const WindowHandle& window) {
            return !window.answersWithin(patience);
        });
    }

private:
    CXApplication& application_;
};

// What the notices and commands here change of the settings.
void keepAnswers(const Settings& answered, Settings& settings)
{
    settings.crashes = answered.crashes;
    settings.noticesOff |= answered.noticesOff;
    settings.lastUpdateCheck = answered.lastUpdateCheck;
}

FeedbackMail feedbackMail(const ApplicationPorts& ports, ApplicationHost& host)
{
    return {{ports.places, ports.system, ports.files, ports.processes, ports.crashes}, host.questions(), [&host] {
                host.mailImpossible();
            }};
}

}  // namespace

void CXApplication::sendFeedback()
{
    feedbackMail(ports_, host_).sendFeedback();
}

void CXApplication::sendCrashMail()
{
    ProbeOfAll probe(*this);
    feedbackMail(ports_, host_).sendCrash(probe);
}

// The settings are not held while a person thinks: other windows go on working.
void CXApplication::withSettingsCopy(const std::function<void(Settings&)>& work)
{
    std::unique_lock lock(sharedState_);
    Settings copy = settings();
    lock.unlock();
    work(copy);
    lock.lock();
    keepAnswers(copy, settings());
}

void CXApplication::lookForUpdates()
{
    withSettingsCopy(
        [this](Settings& copy) { checkForUpdates(copy, ports_.processes, ports_.clock, host_.questions()); });
}

void CXApplication::showFirstPrompts(const CXInstance& instance)
{
    bool mailWanted = false;
    bool updateWanted = false;
    withSettingsCopy([&](Settings& copy) {
        mailWanted = instance.commandLine().has(command_flag::afterCrash) && countCrash(copy, host_.questions());
        updateWanted = remindOfUpdates(copy, ports_.clock.now(), host_.questions());
    });
    if (mailWanted)
        sendCrashMail();
    if (updateWanted)
        lookForUpdates();
}

}  // namespace kelvane
