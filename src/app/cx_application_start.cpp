// How the application object comes and goes; what it does between is in cx_application.cpp.
#include <utility>

#include "app/cx_application.h"
#include "app/feedback_mail.h"
#include "app/makers.h"
#include "app/settings_lists.h"
#include "app/translation.h"
#include "base/random.h"
#include "base/text_table.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// Shorter than a sender waits for its answer.
constexpr std::chrono::milliseconds pickupLimit{4'500};

bool isDecember(FileTime time)
{
    return toIso8601(time).substr(5, 2) == "12";
}

}  // namespace

std::optional<int> CXApplication::start(const CommandText& text, std::uint32_t showCommand)
{
    if (!ports_.system.version().isNt) {
        host_.questions().showError(kelvane::text(TextId::noUnicodeSystem));
        return exit_status::done;
    }
    // First of all, since on some systems the process may have no second thread yet. Without it a crash leaves nothing
    // to look at, which keeps nobody from working.
    (void)ports_.crashes.install(dumpPath(ports_.places));
    if (enterAsInstance(text, showCommand) == Entry::handedOver)
        return exit_status::done;
    activateTranslation(ports_.texts, ports_.places, true);
    firstLine_ = parse(text, showCommand);
    if (!initialise())
        return exit_status::systemTooOld;
    loadSettings();
    if (!serveFirstCommand())
        return exit_status::done;
    looping_.store(true);
    return std::nullopt;
}

CSingleInstanceApp::Entry CXApplication::enterAsInstance(const CommandText& text, std::uint32_t showCommand)
{
    const auto there = [this](const std::filesystem::path& path) { return exists(path); };
    return enter(instancePortNameFor(ports_.processes.isElevated(), portBase_), text, showCommand,
                 forbidsHandOver(text, there),
                 [this](const PortMessage& message, const PortPeer&) { return answer(message); });
}

bool CXApplication::initialise()
{
    seedRandom(ports_.clock.ticks());
    if (!firstLine_.has(command_flag::afterCrash))
        ports_.processes.restartAfterCrash({nativeFromBytes("/X")});
    const auto version = ports_.system.version();
    if (version.major >= version.leastMajor && host_.initialise())
        return true;
    host_.questions().showError(text(TextId::systemTooOld));
    return false;
}

void CXApplication::loadSettings()
{
    chooseLocation(firstLine_.settingsFile);
    const bool translations = anyTranslation(ports_.texts, ports_.places);
    const auto state = [&](bool active) {
        return !translations ? TranslationState::none : active ? TranslationState::active : TranslationState::inactive;
    };
    setTranslation(state(isTranslated()));
    load(host_.questions());
    // Only now it is known whether the person wants one at all.
    if (settings().useTranslation)
        return;
    setTranslation(state(activateTranslation(ports_.texts, ports_.places, false)));
    readFileTypes(root(), context(), settings());  // their names are in the language that was in force
}

bool CXApplication::serveFirstCommand()
{
    if (firstLine_.has(command_flag::helperMode)) {
        if (!firstLine_.helperRequest.empty())
            host_.serveHelperRequest(firstLine_.helperRequest);
        return true;
    }
    host_.prepareWindows(firstLine_);
    return openWindow(firstLine_);
}

CommandLine CXApplication::parse(const CommandText& text, std::uint32_t showCommand)
{
    return parseCommandLine(text, showCommand, ports_.processes.isElevated(),
                            [this](const std::filesystem::path& path) { return exists(path); });
}

bool CXApplication::exists(const std::filesystem::path& path)
{
    return ports_.files.details(path, Links::followed).ok();
}

std::uint32_t CXApplication::answer(const PortMessage& message)
{
    switch (message.tag) {
    case port_tag::symbolicLink:
        return linkRequests_.serve(message.bytes).ok() ? port_answer::taken : port_answer::refused;
    case port_tag::exit:
        return post(CloseAllWindows{}) ? port_answer::taken : port_answer::refused;
    default:
        return acceptCommand(message);
    }
}

std::uint32_t CXApplication::acceptCommand(const PortMessage& message)
{
    auto text = decodeHandOver(message.bytes);
    // A person who is asked something at the start may take their time. Later a main thread that takes nothing hangs,
    // and then the other process shall show a window itself.
    const auto pickup = looping_.load() ? std::make_shared<Pickup>() : nullptr;
    if (!text.ok() || !post(CommandHandedOver{message.tag, std::move(text).value(), pickup}))
        return port_answer::refused;
    return !pickup || pickup->awaitTaken(ports_.waiting, pickupLimit) ? port_answer::taken : port_answer::hangs;
}

void CXApplication::shutDown()
{
    shuttingDown_ = true;
    // A helper that never showed a window has changed no setting, and would write back what its caller has changed.
    const bool onlyHelped = firstLine_.has(command_flag::helperMode) && lastNumber_ == 0;
    if (!eraseRequested_ && !onlyHelped)
        (void)save();
    shutdownActions_.runInReverse();
    if (eraseRequested_)
        eraseSettings();
    linkHelper_.endHelper();
    // Not before the settings are kept: the next instance reads them as soon as it has the port.
    leave();
}

void CXApplication::eraseSettings()
{
    (void)eraseAll();
    if (isDecember(ports_.clock.now()))
        (void)ports_.processes.openLink(std::string(makers::farewellPage()));
}

}  // namespace kelvane
