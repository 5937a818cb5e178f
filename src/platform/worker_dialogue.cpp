#include "platform/worker_dialogue.h"

#include <algorithm>
#include <array>

#include "platform/worker_frames.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds betweenLooks{20};     // at the cancel flag and the memory in use
constexpr milliseconds timeToStart{20'000};  // on a machine that is busy with other things
constexpr std::size_t piece = std::size_t{256} * 1024;

}  // namespace

Patience::Patience(milliseconds time, const CancelFlag& cancel)
    : end_(time.count() > 0 ? steady_clock::now() + time : steady_clock::time_point::max()), cancel_(cancel)
{
}

std::optional<WorkerEnd> Patience::over() const
{
    if (cancel_.cancelled())
        return WorkerEnd::cancelled;
    return steady_clock::now() >= end_ ? std::optional(WorkerEnd::timedOut) : std::nullopt;
}

milliseconds Patience::nextLook() const
{
    const auto left = end_ - steady_clock::now();
    return left > betweenLooks ? betweenLooks : std::max(milliseconds(0), std::chrono::ceil<milliseconds>(left));
}

Status WorkerDialogue::greet(const CancelFlag& cancel)
{
    std::vector<std::byte> message;
    const Failure failure = receiveMessage(message, workerGreetingSize, Patience(timeToStart, cancel));
    const auto greeting = failure ? std::nullopt : decodeGreeting(message);
    if (greeting) {
        confinement_ = *greeting;
        return {};
    }
    const WorkerAnswer why = endAs(failure.value_or(WorkerEnd::died));
    if (why.end == WorkerEnd::cancelled)
        return Error{ErrorKind::cancelled, 0, {}};
    return Error{ErrorKind::invalid, why.error.systemCode, "it does not start: " + why.error.detail};
}

WorkerAnswer WorkerDialogue::ask(std::span<const std::byte> request, const WorkerInput& input, const CancelFlag& cancel)
{
    if (!connected())
        return {WorkerEnd::died, {}, {ErrorKind::io, 0, "it had ended before"}};
    if (request.size() > longestWorkerRequest)
        return {WorkerEnd::notOpened, {}, {ErrorKind::invalid, 0, "the request is too long"}};
    const Patience patience(limits_.perRequest, cancel);
    const auto sent = send(serial_ + 1, request, input, patience);
    if (!sent)
        return {WorkerEnd::notOpened, {}, sent.error()};
    ++serial_;
    WorkerAnswer answer;
    Failure failure = *sent;
    if (!failure)
        failure = receiveMessage(answer.message, limits_.answerBytes, patience);
    if (failure)
        return endAs(*failure);
    answer.end = WorkerEnd::answered;
    return answer;
}

WorkerDialogue::Failure WorkerDialogue::receiveMessage(std::vector<std::byte>& message, std::uint64_t longest,
                                                       const Patience& patience)
{
    std::array<std::byte, workerHeaderSize> head;
    if (const Failure failure = receive(head, patience))
        return failure;
    const auto header = parseWorkerHeader(head);
    if (!header || header->serial != serial_ || (longest != 0 && header->length > longest)) {
        fault_ = header && header->serial == serial_ ? "it answered with too much" : "it answered with nonsense";
        return WorkerEnd::died;
    }
    // Memory is taken for what has come, not for what is claimed.
    while (message.size() < header->length) {
        const std::size_t have = message.size();
        message.resize(have + std::min<std::size_t>(piece, header->length - have));
        if (const Failure failure = receive(std::span(message).subspan(have), patience))
            return failure;
    }
    return std::nullopt;
}

WorkerAnswer WorkerDialogue::endAs(WorkerEnd end)
{
    WorkerAnswer answer{end, {}, {ErrorKind::io, 0, fault_}};
    if (end == WorkerEnd::died && fault_.empty())
        noteWhyItEnded(answer);
    disconnect();
    return answer;
}

}  // namespace kelvane
