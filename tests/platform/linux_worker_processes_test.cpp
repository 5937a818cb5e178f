// Workers that break down, lie, and try what they must not do: each costs one answer, and nothing else.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <thread>

#include "platform/linux/adapters.h"
#include "support/temp_tree.h"
#include "text/worker_pool.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

std::string textOf(const WorkerAnswer& answer)
{
    return {reinterpret_cast<const char*>(answer.message.data()), answer.message.size()};
}

std::span<const std::byte> bytesOf(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

// Running or not yet waited for.
std::ptrdiff_t children()
{
    const auto isOurs = [](const fs::directory_entry& entry) {
        std::ifstream facts(entry.path() / "stat");
        std::string id, name, state;
        pid_t parent = 0;
        return facts >> id >> name >> state >> parent && parent == ::getpid();
    };
    return std::count_if(fs::directory_iterator("/proc"), fs::directory_iterator(), isOurs);
}

std::ptrdiff_t openFiles()
{
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

// Gone, or waiting only for somebody to take note of its end.
bool hasEnded(pid_t process)
{
    std::ifstream facts("/proc/" + std::to_string(process) + "/stat");
    std::string id, name, state;
    return !(facts >> id >> name >> state) || state == "Z";
}

template <class Condition>
bool soon(Condition condition)
{
    const auto deadline = steady_clock::now() + 20s;
    while (!condition() && steady_clock::now() < deadline)
        std::this_thread::sleep_for(5ms);
    return condition();
}

// The process that was started with this word, 0 for none.
pid_t processWith(std::string_view word)
{
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "cmdline");
        const std::string line((std::istreambuf_iterator<char>(file)), {});
        if (line.find(word) != std::string::npos && line.find("sleep") != std::string::npos)
            return std::stoi(entry.path().filename().string());
    }
    return 0;
}

class LinuxWorkerProcessesTest : public ::testing::Test {
protected:
    static WorkerLimits limits(WorkerReach reach = WorkerReach::givenFile)
    {
        return {WorkerProgram::documents, reach, 256u << 20, 30s, 1u << 20};
    }

    std::unique_ptr<WorkerProcess> start(const WorkerLimits& with = limits())
    {
        auto worker = processes_->start(with, never_);
        EXPECT_TRUE(worker.ok()) << worker.error().detail;
        return worker ? std::move(*worker) : nullptr;
    }

    WorkerAnswer ask(WorkerProcess& worker, std::string_view request, const WorkerInput& input = {})
    {
        return worker.ask(bytesOf(request), input, never_);
    }

    testing::TempTree tree_;
    const CancelFlag never_;
    std::unique_ptr<WorkerProcesses> processes_ =
        makeLinuxWorkerProcesses({{"/nonexistent", KELVANE_HOSTILE_WORKER}, {KELVANE_HOSTILE_MEDIA_WORKER}});
};

TEST_F(LinuxWorkerProcessesTest, ARequestCarriesItsFile)
{
    const auto worker = start();
    const fs::path file = tree_.write("a.txt", "of a file");
    EXPECT_EQ(textOf(ask(*worker, "echo text ", {file, {}})), "text of a file");
    const std::string bytes(100'000, 'b');
    EXPECT_EQ(textOf(ask(*worker, "echo ", {{}, bytesOf(bytes)})), bytes);
    EXPECT_EQ(textOf(ask(*worker, "tool cat", {file, {}})), "of a file");
    EXPECT_EQ(textOf(ask(*worker, "tool cat", {{}, bytesOf(bytes)})), bytes);
    // The standard streams, the socket, /dev/null for its tools, and the file.
    EXPECT_EQ(textOf(ask(*worker, "files", {file, {}})), "6");
    EXPECT_TRUE(worker->alive());
}

TEST_F(LinuxWorkerProcessesTest, AFileThatCannotBeOpenedCostsNoWorker)
{
    const auto worker = start();
    const auto kindOf = [&](const WorkerInput& input) {
        const WorkerAnswer answer = ask(*worker, "echo", input);
        EXPECT_EQ(answer.end, WorkerEnd::notOpened);
        return answer.error.kind;
    };
    EXPECT_EQ(kindOf({tree_.path("none"), {}}), ErrorKind::notFound);
    EXPECT_EQ(kindOf({tree_.path(), {}}), ErrorKind::wrongType);
    EXPECT_EQ(kindOf({"/dev/zero", {}}), ErrorKind::wrongType);
    const fs::path link = tree_.symlink("link", tree_.write("target", "seen"));
    EXPECT_EQ(kindOf({link, {}}), ErrorKind::wrongType);
    EXPECT_EQ(textOf(ask(*worker, "echo ", {link, {}, Links::followed})), "seen");
}

TEST_F(LinuxWorkerProcessesTest, EachBreakdownEndsAsWhatItWas)
{
    const auto endOf = [&](std::string_view request, WorkerLimits with = limits()) {
        const auto worker = start(with);
        const WorkerEnd end = ask(*worker, request).end;
        EXPECT_FALSE(worker->alive()) << request;
        EXPECT_EQ(ask(*worker, "echo").end, WorkerEnd::died) << request;
        return end;
    };
    for (const auto* request : {"crash", "exit", "nonsense", "too-long", "close"})
        EXPECT_EQ(endOf(request), WorkerEnd::died) << request;
    EXPECT_EQ(endOf("eat"), WorkerEnd::tooMuchMemory);
    WorkerLimits shortly = limits();
    shortly.perRequest = 200ms;
    for (const auto* request : {"hang", "spin", "half"})
        EXPECT_EQ(endOf(request, shortly), WorkerEnd::timedOut) << request;
}

TEST_F(LinuxWorkerProcessesTest, CancellingEndsTheWaitAtOnce)
{
    const auto worker = start();
    CancelFlag cancel;
    std::thread person([&] {
        std::this_thread::sleep_for(50ms);
        cancel.cancel();
    });
    const auto begun = steady_clock::now();
    EXPECT_EQ(worker->ask(bytesOf("hang"), {}, cancel).end, WorkerEnd::cancelled);
    EXPECT_LT(steady_clock::now() - begun, 5s);
    person.join();
}

// A machine that is busy lets a worker greet seconds after it was started.
TEST_F(LinuxWorkerProcessesTest, CancellingEndsTheWaitForAGreetingAsWell)
{
    const fs::path mute = tree_.write("mute", "#!/bin/sh\nexec sleep 30\n");
    fs::permissions(mute, fs::perms::owner_all);
    const auto processes = makeLinuxWorkerProcesses({{mute}, {}});
    CancelFlag cancel;
    std::thread person([&] {
        std::this_thread::sleep_for(50ms);
        cancel.cancel();
    });
    const auto begun = steady_clock::now();
    EXPECT_EQ(processes->start(limits(), cancel).error().kind, ErrorKind::cancelled);
    EXPECT_LT(steady_clock::now() - begun, 5s);
    person.join();
}

TEST_F(LinuxWorkerProcessesTest, AWorkerIsRefusedWhatItDoesNotNeed)
{
    const auto worker = start();
    if (!worker->confinement().calls)
        GTEST_SKIP() << "this kernel filters no system calls";
    const fs::path file = tree_.write("given", "content");
    const std::string denied = std::to_string(EPERM), self = std::to_string(::getpid());
    for (const std::string& attempt :
         {std::string("socket"), "write " + tree_.path("new").native(), "write " + file.native(), "kill " + self,
          "trace " + self, std::string("leave-group"), std::string("outlive"), std::string("new-view"),
          std::string("share-memory"), "signal-by-file " + self, std::string("type"), std::string("write-given"),
          std::string("chmod-given"), "remove " + file.native()})
        EXPECT_EQ(textOf(ask(*worker, attempt, {file, {}})), denied) << attempt;
    EXPECT_EQ(textOf(ask(*worker, "new-call")), std::to_string(ENOSYS));
    EXPECT_EQ(tree_.read("given"), "content");
    EXPECT_FALSE(fs::exists(tree_.path("new")));
}

TEST_F(LinuxWorkerProcessesTest, FilesBeyondItsReachStayClosed)
{
    const auto near = start(), far = start(limits(WorkerReach::otherFiles));
    if (!near->confinement().files)
        GTEST_SKIP() << "this kernel has no Landlock";
    const fs::path file = tree_.write("private", "#!/bin/sh\n");
    fs::permissions(file, fs::perms::owner_all);
    const std::string denied = std::to_string(EACCES);
    EXPECT_EQ(textOf(ask(*near, "read " + file.native())), denied);
    EXPECT_EQ(textOf(ask(*near, "start " + file.native())), denied);
    EXPECT_EQ(textOf(ask(*near, "read /proc/1/environ")), denied);
    EXPECT_EQ(textOf(ask(*near, "read /etc/passwd")), "0");
    EXPECT_EQ(textOf(ask(*far, "read " + file.native())), "0");
    // What it starts is confined as it is.
    EXPECT_TRUE(textOf(ask(*near, "tool cat " + file.native())).starts_with("failed"));
    EXPECT_TRUE(textOf(ask(*near, "tool touch " + tree_.path("new").native())).starts_with("failed"));
    EXPECT_FALSE(fs::exists(tree_.path("new")));
}

// What decodes needs nobody else, and no code but that of libraries.
TEST_F(LinuxWorkerProcessesTest, AWorkerThatDecodesIsAloneInItsProcess)
{
    WorkerLimits media = limits();
    media.program = WorkerProgram::media;
    const auto worker = start(media), other = start();
    if (!worker->confinement().calls)
        GTEST_SKIP() << "this kernel filters no system calls";
    const fs::path file = tree_.write("given", "content");
    const std::string denied = std::to_string(EPERM);
    for (const std::string& attempt :
         {std::string("fork"), std::string("start /bin/true"), std::string("own-code"), std::string("own-code-later"),
          std::string("socket"), std::string("thread"), "write " + file.native(), "remove " + file.native()})
        EXPECT_EQ(textOf(ask(*worker, attempt)), denied) << attempt;
    EXPECT_TRUE(textOf(ask(*worker, "tool cat", {file, {}})).starts_with("failed"));
    EXPECT_EQ(textOf(ask(*worker, "echo ", {file, {}})), "content");
    EXPECT_EQ(textOf(ask(*other, "fork")), "0");
    if (worker->confinement().files) {
        EXPECT_EQ(textOf(ask(*worker, "read " + file.native())), std::to_string(EACCES));
    }
}

TEST_F(LinuxWorkerProcessesTest, ToolsEndWithTheirWorker)
{
    const auto worker = start();
    const std::string seconds = "86399." + std::to_string(::getpid());
    pid_t tool = 0;
    CancelFlag seen;
    std::thread look([&] {
        static_cast<void>(soon([&] { return (tool = processWith(seconds)) != 0; }));
        seen.cancel();
    });
    EXPECT_EQ(worker->ask(bytesOf("tool sleep " + seconds), {}, seen).end, WorkerEnd::cancelled);
    look.join();
    ASSERT_NE(tool, 0);
    EXPECT_TRUE(soon([&] { return hasEnded(tool); }));
}

TEST_F(LinuxWorkerProcessesTest, AProgramThatIsKilledTakesItsWorkersAlong)
{
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t program = ::fork();
    if (program == 0) {
        const auto worker = start();
        const pid_t id = std::stoi(textOf(ask(*worker, "pid")));
        static_cast<void>(::write(pipe[1], &id, sizeof id));
        static_cast<void>(ask(*worker, "spin"));
        ::_exit(0);
    }
    pid_t worker = 0;
    ASSERT_EQ(::read(pipe[0], &worker, sizeof worker), static_cast<ssize_t>(sizeof worker));
    EXPECT_FALSE(hasEnded(worker));
    ::kill(program, SIGKILL);
    ::waitpid(program, nullptr, 0);
    EXPECT_TRUE(soon([&] { return hasEnded(worker); }));
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(LinuxWorkerProcessesTest, WhatIsNoWorkerIsNotTakenForOne)
{
    const std::ptrdiff_t before = children();
    EXPECT_EQ(makeLinuxWorkerProcesses({{"/nonexistent"}})->start(limits(), never_).error().kind, ErrorKind::notFound);
    EXPECT_EQ(makeLinuxWorkerProcesses({{"/bin/true"}})->start(limits(), never_).error().kind, ErrorKind::invalid);
    EXPECT_EQ(children(), before);
}

// Several threads, each with good and bad requests in turn.
TEST_F(LinuxWorkerProcessesTest, ThePoolGoesOnAndLeavesNothingBehind)
{
    const std::ptrdiff_t before = openFiles(), childrenBefore = children();
    {
        processes_ = makeLinuxWorkerProcesses({{KELVANE_HOSTILE_WORKER}});
        WorkerPool pool(*processes_, limits(), 3);
        std::atomic<int> answered = 0, broken = 0;
        const auto work = [&] {
            for (int i = 0; i < 250; ++i) {
                const bool bad = i % 50 == 25;
                const auto answer = pool.ask(bytesOf(bad ? "crash" : "echo good"), {}, never_);
                ASSERT_TRUE(answer.ok());
                answered += answer->end == WorkerEnd::answered && textOf(*answer) == "good";
                broken += answer->end == WorkerEnd::died;
            }
        };
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(work);
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(answered, 980);
        EXPECT_EQ(broken, 20);
    }
    processes_.reset();
    EXPECT_EQ(openFiles(), before);
    EXPECT_EQ(children(), childrenBefore);
}

}  // namespace
}  // namespace kelvane
