#include "app/link_helper_client.h"

#include <chrono>
#include <utility>

#include "app/link_request.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds pollPause{250};
constexpr int polls = 30;
constexpr milliseconds requestLimit{5'000};
constexpr milliseconds exitLimit{500};

}  // namespace

LinkHelperClient::LinkHelperClient(InstancePorts& ports, Processes& processes, const Places& places, Waiting& waiting,
                                   std::string portName)
    : ports_(ports), processes_(processes), places_(places), waiting_(waiting), portName_(std::move(portName))
{
}

Status LinkHelperClient::ensureHelper()
{
    if (ports_.isHeld(portName_))
        return {};
    if (auto started = processes_.startElevated(places_.programFile(), {nativeFromBytes("/S"), nativeFromBytes("/P")});
        !started.ok())
        return started;
    startedHelper_ = true;
    for (int poll = 0; poll < polls; ++poll) {
        waiting_.pause(pollPause);
        if (ports_.isHeld(portName_))
            return {};
    }
    return Error{ErrorKind::io, 0, "the elevated helper does not answer"};
}

Status LinkHelperClient::make(const std::filesystem::path& link, const std::filesystem::path& target)
{
    auto request = encodeLinkRequest(bytesFromNative(link.native()), bytesFromNative(target.native()));
    if (!request.ok())
        return request.error();
    const std::lock_guard lock(mutex_);
    if (auto ready = ensureHelper(); !ready.ok())
        return ready;
    const auto answer = ports_.send(portName_, {port_tag::symbolicLink, std::move(request).value()}, requestLimit);
    if (!answer.ok())
        return answer.error();
    return answer.value() == port_answer::taken ? Status{}
                                                : Error{ErrorKind::io, 0, "the elevated helper made no link"};
}

void LinkHelperClient::endHelper()
{
    const std::lock_guard lock(mutex_);
    // Whether it heard us makes no difference: this process ends either way.
    if (std::exchange(startedHelper_, false))
        (void)ports_.send(portName_, {port_tag::exit, {}}, exitLimit);
}

}  // namespace kelvane
