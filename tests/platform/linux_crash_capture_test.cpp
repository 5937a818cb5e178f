#include "platform/crash_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sstream>
#include <thread>

#include "platform/minidump_reader.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using ::testing::HasSubstr;
using testing::MinidumpReader;
using testing::TempTree;

// The sanitizers' own handlers come after ours, and would end the program in their way.
constexpr const char* sanitizersKeepOut =
    "handle_segv=0:handle_sigbus=0:handle_abort=0:handle_sigill=0:handle_sigfpe=0:handle_sigtrap=0:use_sigaltstack=0";

std::filesystem::path crashingProgram()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "crashing_program";
}

struct Outcome {
    int signal = 0;  // that ended it
    int exitCode = 0;
    std::string output;
    [[nodiscard]] std::uint64_t told(const std::string& name) const
    {
        std::istringstream words(output);
        for (std::string word; words >> word;)
            if (std::uint64_t value = 0; word == name && words >> value)
                return value;
        return 0;
    }
};

std::string outputOf(const std::string& command, int& status)
{
    std::string output;
    FILE* pipe = ::popen(command.c_str(), "r");
    char part[4096];
    while (const std::size_t count = pipe ? ::fread(part, 1, sizeof part, pipe) : 0)
        output.append(part, count);
    status = pipe ? ::pclose(pipe) : -1;
    return output;
}

// Returns when nobody holds the program's output open any more: neither it nor its watcher.
Outcome crash(const std::filesystem::path& dump, const std::string& way)
{
    const std::string options = std::string("='") + sanitizersKeepOut + "' ";
    int status = 0;
    Outcome outcome;
    outcome.output = outputOf("exec env ASAN_OPTIONS" + options + "TSAN_OPTIONS" + options + "UBSAN_OPTIONS" + options +
                                  crashingProgram().string() + " '" + dump.string() + "' '" + way + "'",
                              status);
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

std::size_t filesIn(const TempTree& tree)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(tree.path()), {}));
}

class CrashCaptureTest : public ::testing::Test {
protected:
    [[nodiscard]] MinidumpReader dump() const { return MinidumpReader(tree_.read("x.mdmp")); }

    TempTree tree_;
    std::filesystem::path path_ = tree_.path("x.mdmp");
};

TEST_F(CrashCaptureTest, TellsOfAFaultOnAnotherThread)
{
    tree_.write("x.mdmp", "an older dump");
    const Outcome outcome = crash(path_, "again");
    EXPECT_EQ(outcome.signal, SIGSEGV);

    const MinidumpReader dump = this->dump();
    EXPECT_EQ(dump.number(0, 4), 0x504D'444Du);
    EXPECT_EQ(dump.field(7, 0, 2), 9u);        // processor
    EXPECT_EQ(dump.field(7, 20, 4), 0x8201u);  // system
    EXPECT_EQ(dump.field(6, 0, 4), outcome.told("thread"));
    EXPECT_EQ(dump.field(6, 8, 4), static_cast<std::uint64_t>(SIGSEGV));
    EXPECT_EQ(dump.field(6, 24, 8), 0x10u);
    EXPECT_THAT(dump.stream(0x4767'0006), HasSubstr("x.mdmp"));
    EXPECT_THAT(dump.stream(0x4767'0009), HasSubstr("crashing_program"));

    const auto threads = dump.threads();
    ASSERT_GE(threads.size(), 2u);
    const auto& thread = threads[0];
    EXPECT_EQ(thread.id, outcome.told("thread"));
    EXPECT_LT(thread.instruction - outcome.told("function"), 4096u);
    for (const auto& each : threads) {
        EXPECT_LE(each.stackStart, each.stackPointer);
        EXPECT_LT(each.stackPointer, each.stackStart + each.stackSize);
    }
}

TEST_F(CrashCaptureTest, NamesTheModulesWithTheirBuilds)
{
    const Outcome outcome = crash(path_, "again");
    const auto modules = dump().modules();
    ASSERT_FALSE(modules.empty());
    EXPECT_EQ(modules[0].name, crashingProgram().string());
    EXPECT_LT(outcome.told("function") - modules[0].address, modules[0].size);
    EXPECT_TRUE(std::ranges::any_of(
        modules, [](const auto& module) { return module.name.find("/libc.so") != std::string::npos; }));

    int status = 0;
    const std::string notes = outputOf("readelf -n " + crashingProgram().string(), status);
    const std::size_t at = notes.find("Build ID: ");
    ASSERT_NE(at, std::string::npos) << "readelf is needed";
    std::string build;
    for (const char c : modules[0].codeView.substr(4)) {
        constexpr const char* digits = "0123456789abcdef";
        build += digits[static_cast<unsigned char>(c) >> 4];
        build += digits[static_cast<unsigned char>(c) & 15];
    }
    EXPECT_EQ(modules[0].codeView.substr(0, 4), "LEpB");
    EXPECT_EQ(notes.substr(at + 10, build.size() + 1), build + "\n");
}

TEST_F(CrashCaptureTest, ADebuggerPrintsTheStack)
{
    int status = 0;
    if (outputOf("command -v lldb", status).empty())
        GTEST_SKIP() << "there is no lldb";
    const Outcome outcome = crash(path_, "again");
    const std::string stacks = outputOf("lldb -b -c '" + path_.string() + "' -o 'bt all' 2>&1", status);
    EXPECT_THAT(stacks, HasSubstr("crashOnPurpose"));
    EXPECT_THAT(stacks, HasSubstr("SIGSEGV"));
    EXPECT_THAT(stacks, HasSubstr("crashing_program`main")) << "the stack of the thread that waits";
}

TEST_F(CrashCaptureTest, LeavesADumpForEachWayToCrash)
{
    const struct {
        const char* way;
        int signal;
    } rows[] = {{"abort", SIGABRT},
                {"trap", SIGTRAP},
                {"overflow", SIGSEGV},
                {"overflow on thread", SIGSEGV},
                {"two", SIGSEGV}};
    for (const auto& row : rows) {
        EXPECT_EQ(crash(path_, row.way).signal, row.signal) << row.way;
        const MinidumpReader dump = this->dump();
        EXPECT_EQ(dump.field(6, 8, 4), static_cast<std::uint64_t>(row.signal)) << row.way;
        EXPECT_GE(dump.threads().at(0).stackSize, 64u) << row.way;
        EXPECT_EQ(filesIn(tree_), 1u) << row.way;
        tree_.remove("x.mdmp");
    }
}

TEST_F(CrashCaptureTest, OnlyTheOwnerMayReadIt)
{
    static_cast<void>(crash(path_, "abort"));
    struct stat facts {};
    ASSERT_EQ(::stat(path_.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777u, 0600u);
}

TEST_F(CrashCaptureTest, WritesARunningProgramThatThenGoesOn)
{
    const Outcome outcome = crash(path_, "now");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "alive\n");
    EXPECT_FALSE(dump().has(6));
    EXPECT_FALSE(dump().threads().empty());
}

TEST_F(CrashCaptureTest, WhatStandsInTheWayOnlyCostsTheDump)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(crash(tree_.path("no folder/x.mdmp"), "abort").signal, SIGABRT);
    EXPECT_EQ(crash(path_, "watcher gone").signal, SIGSEGV);
    EXPECT_EQ(filesIn(tree_), 0u);

    const Outcome hung = crash(path_, "watcher hangs");
    EXPECT_EQ(hung.signal, SIGSEGV);
    ASSERT_GT(hung.told("watcher"), 1u);
    ::kill(static_cast<pid_t>(hung.told("watcher")), SIGKILL);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(CrashCaptureTest, StartsAgainWhatLivedLongEnough)
{
    EXPECT_EQ(crash(path_, "early").signal, SIGSEGV);
    EXPECT_EQ(crash(tree_.path("y.mdmp"), "again").signal, SIGSEGV);
    for (int i = 0; i < 1'000 && !std::filesystem::exists(tree_.path("y.mdmp.again")); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(tree_.read("y.mdmp.again"), "own session");
    EXPECT_FALSE(std::filesystem::exists(tree_.path("x.mdmp.again")));
}

}  // namespace
}  // namespace kelvane
