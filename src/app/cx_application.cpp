#include "app/cx_application.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace kelvane {
namespace {

constexpr std::chrono::milliseconds endedThreadLimit{10'000};

// Of Settings::moreOptions: windows' threads end at once, whoever still works on them.
constexpr std::uint32_t threadsAreNotHeld = 0x40000000;

}  // namespace

CXApplication::CXApplication(const ApplicationPorts& ports, SettingsPorts settings, ApplicationHost& host,
                             std::string_view portBase)
    : CRegistryAccess(std::move(settings)),
      CSingleInstanceApp(ports.instances, ports.waiting),
      ports_(ports),
      host_(host),
      portBase_(portBase),
      background_(ports.waiting),
      linkRequests_(
          [&files = ports.files](const std::filesystem::path& path) -> Result<FileKind> {
              const auto found = files.details(path, Links::followed);
              return found.ok() ? Result<FileKind>(found->kind) : found.error();
          },
          ports.links),
      linkHelper_(ports.instances, ports.processes, ports.places, ports.waiting, instancePortNameFor(true, portBase))
{
}

CXApplication::~CXApplication()
{
    // Nobody may come in while the members go.
    leave();
    messages_.close();
}

int CXApplication::run(const CommandText& text, std::uint32_t showCommand)
{
    if (const auto status = start(text, showCommand))
        return *status;
    while (auto message = messages_.take()) {
        dispatch(*std::move(message));
        if (mayLeave())
            break;
    }
    shutDown();
    return exit_status::done;
}

bool CXApplication::dispatchWaiting()
{
    while (auto message = messages_.takeWaiting()) {
        dispatch(*std::move(message));
        if (mayLeave())
            return false;
    }
    return true;
}

// A command line that came in at the last moment still opens its window; the next one is refused, and its sender
// becomes the instance.
bool CXApplication::mayLeave()
{
    return instances_.empty() && messages_.closeIfEmpty();
}

void CXApplication::dispatch(ThreadMessage message)
{
    std::visit([this](auto& one) { act(one); }, message);
}

void CXApplication::act(const WindowEnded& ended)
{
    const auto found = std::find_if(instances_.begin(), instances_.end(),
                                    [&](const auto& instance) { return instance->number() == ended.instance; });
    if (found == instances_.end())
        return;
    (*found)->awaitEnd(endedThreadLimit);
    instances_.erase(found);
}

void CXApplication::act(OpenWindow& wanted)
{
    openWindow(std::move(wanted.line));
}

void CXApplication::act(const CloseAllWindows&)
{
    for (const auto& window : handles())
        window.requestClose();
}

void CXApplication::act(const CommandHandedOver& handedOver)
{
    if (!handedOver.pickup || handedOver.pickup->take())
        openWindow(parse(handedOver.text, handedOver.showCommand));
}

void CXApplication::act(const ListWindows& wanted)
{
    wanted.request->answer(handles());
}

void CXApplication::act(const FirstWindowUp&)
{
    starting_ = false;
    host_.firstWindowIsUp();
}

bool CXApplication::openWindow(CommandLine line)
{
    if (shuttingDown_)
        return false;
    const bool first = lastNumber_ == 0;
    const auto instance = std::make_shared<CXInstance>(++lastNumber_, std::move(line), first, instanceContext());
    instances_.push_front(instance);
    ++openLoops_;
    if (instance->start())
        return true;
    --openLoops_;
    instances_.pop_front();
    return false;
}

InstanceContext CXApplication::instanceContext()
{
    return {host_,
            messages_,
            ports_.waiting,
            background_,
            ports_.crashes,
            openLoops_,
            [this](CXInstance& instance) { showFirstPrompts(instance); },
            [this] { return settingsFailure(); },
            (settings().moreOptions & threadsAreNotHeld) == 0};
}

WindowHandles CXApplication::handles()
{
    WindowHandles all;
    for (const auto& instance : instances_)
        all.push_back(instance->handle());
    return all;
}

std::optional<WindowHandles> CXApplication::windows(std::chrono::milliseconds limit)
{
    if (std::this_thread::get_id() == mainThread_)
        return handles();
    const auto request = std::make_shared<WindowListRequest>();
    if (!post(ListWindows{request}))
        return WindowHandles{};
    return request->await(ports_.waiting, limit);
}

std::u16string CXApplication::settingsFailure()
{
    const std::lock_guard lock(sharedState_);
    return location().isIni() && !isWritable() ? failureText(SettingsCode::accessDenied) : std::u16string();
}

}  // namespace kelvane
