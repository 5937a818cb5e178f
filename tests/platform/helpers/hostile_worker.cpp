// A worker that does what it is told: answer, break down, misbehave, or try what a worker must not do. The request is
// a word and what follows it; attempts are answered with the error code of the system, 0 for success. Walled in as the
// program is that it is compiled to stand for.
#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <sstream>
#include <thread>

#include "base/byte_stream.h"
#include "platform/linux/adapters.h"
#include "platform/linux/descriptor_file.h"
#include "platform/linux/worker_start.h"
#include "platform/worker_frames.h"

namespace kelvane::linux_os {
namespace {

struct Call {
    std::string rest;
    RandomAccessFile& file;
    FilterPrograms& filters;
    std::uint32_t serial;
};

using Deed = std::string (*)(const Call&);

[[noreturn]] void sleepForever()
{
    for (;;)
        ::pause();
}

void tell(std::span<const std::byte> bytes)
{
    static_cast<void>(::send(workerSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

std::string code(long answer)
{
    return std::to_string(answer < 0 ? errno : 0);
}

std::string contentOf(RandomAccessFile& file)
{
    std::string content(file.size(), '\0');
    const auto count = file.readAt(0, std::as_writable_bytes(std::span(content)));
    content.resize(count ? *count : 0);
    return content;
}

int descriptorOf(RandomAccessFile& file)
{
    return dynamic_cast<DescriptorFile&>(file).descriptor();
}

std::string reopenForWriting(const Call& call)
{
    return code(::open(("/proc/self/fd/" + std::to_string(descriptorOf(call.file))).c_str(), O_WRONLY));
}

std::string eat(const Call&)
{
    constexpr std::size_t piece = std::size_t{16} << 20;
    for (;;) {
        auto* const bytes = new char[piece];
        std::memset(bytes, 1, piece);
        ::usleep(1000);
    }
}

// Claims nearly 4 GiB and sends until nobody listens.
std::string answerTooLong(const Call& call)
{
    std::vector<std::byte> head = frameWorkerMessage(call.serial, {});
    std::fill(head.end() - 4, head.end(), std::byte{0xF0});
    tell(head);
    for (const std::vector<std::byte> piece(65536);;)
        if (::send(workerSocket, piece.data(), piece.size(), MSG_NOSIGNAL) < 0)
            sleepForever();
}

std::string answerHalf(const Call& call)
{
    std::vector<std::byte> frame = frameWorkerMessage(call.serial, std::vector<std::byte>(1000));
    frame.resize(500);
    tell(frame);
    sleepForever();
}

std::string talkNonsense(const Call&)
{
    tell(std::vector<std::byte>(64, std::byte{0xAA}));
    sleepForever();
}

std::string closeItsEnd(const Call&)
{
    ::shutdown(workerSocket, SHUT_RDWR);
    sleepForever();
}

std::string countFiles(const Call&)
{
    int count = 0;
    for (int file = 0; file < 1024; ++file)
        count += ::fcntl(file, F_GETFD) >= 0;
    return std::to_string(count);
}

std::string runTool(const Call& call)
{
    std::istringstream words(call.rest);
    const std::vector<std::string> all{std::istream_iterator<std::string>(words), {}};
    const std::string& tool = all.at(0);
    const std::vector<std::string> arguments(all.begin() + 1, all.end());
    std::string output;
    const Status status = call.filters.run(tool, arguments, call.file, [&](auto piece) {
        output.append(reinterpret_cast<const char*>(piece.data()), piece.size());
        return true;
    });
    return status ? output : "failed: " + status.error().detail;
}

std::string startProgram(const Call& call)
{
    char* const words[] = {const_cast<char*>(call.rest.c_str()), nullptr};
    return code(::execv(call.rest.c_str(), words));  // returns where it is refused
}

std::string splitInTwo(const Call&)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    if (child > 0)
        ::waitpid(child, nullptr, 0);
    return code(child);
}

std::string codeOfItsOwn(int flags, int file)
{
    return code(::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, flags, file, 0) == MAP_FAILED ? -1 : 0);
}

// Written first, made executable then.
std::string codeOfItsOwnLater(const Call&)
{
    void* const memory = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return code(::mprotect(memory, 4096, PROT_READ | PROT_EXEC));
}

std::string askAnotherThread(const Call&)
{
    std::string answer;
    std::thread([&] { answer = code(::socket(AF_UNIX, SOCK_STREAM, 0)); }).join();
    return answer;
}

const std::map<std::string, Deed, std::less<>> deeds = {
    {"echo", [](const Call& call) { return call.rest + contentOf(call.file); }},
    {"pid", [](const Call&) { return std::to_string(::getpid()); }},
    {"hang", [](const Call&) -> std::string { sleepForever(); }},
    {"spin",
     [](const Call&) -> std::string {
         for (volatile bool on = true; on;)
             ;
         return {};
     }},
    {"crash", [](const Call&) -> std::string { std::abort(); }},
    {"exit", [](const Call&) -> std::string { ::_exit(3); }},
    {"eat", eat},
    {"nonsense", talkNonsense},
    {"too-long", answerTooLong},
    {"half", answerHalf},
    {"close", closeItsEnd},
    {"files", countFiles},
    {"tool", runTool},
    {"socket", [](const Call&) { return code(::socket(AF_INET, SOCK_STREAM, 0)); }},
    {"read", [](const Call& call) { return code(::open(call.rest.c_str(), O_RDONLY)); }},
    {"write", [](const Call& call) { return code(::open(call.rest.c_str(), O_WRONLY | O_CREAT, 0600)); }},
    {"write-given", reopenForWriting},
    {"chmod-given", [](const Call& call) { return code(::fchmod(descriptorOf(call.file), 0777)); }},
    {"remove", [](const Call& call) { return code(::unlink(call.rest.c_str())); }},
    {"start", startProgram},
    {"fork", splitInTwo},
    {"own-code", [](const Call&) { return codeOfItsOwn(MAP_PRIVATE | MAP_ANONYMOUS, -1); }},
    {"own-code-later", codeOfItsOwnLater},
    {"thread", askAnotherThread},
    {"kill", [](const Call& call) { return code(::kill(std::stoi(call.rest), SIGTERM)); }},
    {"trace", [](const Call& call) { return code(::ptrace(PTRACE_SEIZE, std::stoi(call.rest), nullptr, nullptr)); }},
    {"leave-group", [](const Call&) { return code(::setsid()); }},
    {"outlive", [](const Call&) { return code(::syscall(SYS_prctl, 1 /* PR_SET_PDEATHSIG */, 0, 0, 0, 0)); }},
    {"share-memory", [](const Call&) { return code(::shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600)); }},
    {"signal-by-file", [](const Call& call) { return code(::fcntl(0, F_SETOWN, std::stoi(call.rest))); }},
    {"type", [](const Call&) { return code(::ioctl(0, TIOCSTI, "#")); }},
    {"new-call",
     [](const Call&) { return code(::syscall(463 /* setxattrat */, -1, nullptr, 0, nullptr, nullptr, 0)); }},
    {"new-view", [](const Call&) { return code(::syscall(SYS_unshare, 0x10000000 /* CLONE_NEWUSER */)); }},
};

void serve(FilterPrograms& filters)
{
    SocketRequests requests;
    for (std::uint32_t serial = 1;; ++serial) {
        const auto request = requests.next();
        if (!request)
            return;
        const std::string text(reinterpret_cast<const char*>(request->message.data()), request->message.size());
        const std::string word = text.substr(0, text.find(' '));
        const Call call{text.substr(std::min(word.size() + 1, text.size())), *request->file, filters, serial};
        const std::string answer = deeds.at(word)(call);
        static_cast<void>(requests.answer(std::as_bytes(std::span(answer))));
    }
}

}  // namespace
}  // namespace kelvane::linux_os

int main(int count, char** words)
{
    std::unique_ptr<kelvane::FilterPrograms> filters;
    const auto prepare = [&] { filters = kelvane::makeLinuxFilterPrograms(std::chrono::milliseconds(0)); };
    if (kelvane::linux_os::becomeWorker(kelvane::WorkerProgram::KELVANE_WORKER_PROGRAM, count, words, prepare))
        kelvane::linux_os::serve(*filters);
    return 0;
}
