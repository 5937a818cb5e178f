// Scripts stand in for the programs that read documents.
#include <fcntl.h>
#include <sys/stat.h>

#include <thread>

#include "platform/linux/adapters.h"
#include "platform/linux/descriptor_file.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A file that is no descriptor.
class Bytes final : public RandomAccessFile {
public:
    explicit Bytes(std::string text) : text_(std::move(text)) {}
    std::uint64_t size() const override { return text_.size(); }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        const std::string_view rest = std::string_view(text_).substr(std::min<std::size_t>(position, text_.size()));
        const std::size_t count = std::min(rest.size(), buffer.size());
        std::copy_n(std::as_bytes(std::span(rest)).begin(), count, buffer.begin());
        return count;
    }

private:
    std::string text_;
};

class LinuxFilterProgramsTest : public ::testing::Test {
protected:
    void script(const std::string& name, const std::string& text)
    {
        ::chmod(tree_.write("bin/" + name, "#!/bin/sh\n" + text + "\n").c_str(), 0700);
    }

    Status run(const std::string& program, RandomAccessFile& input, const std::vector<std::string>& arguments = {},
               std::size_t enough = std::string::npos)
    {
        output_.clear();
        return programs_->run(program, arguments, input, [&](auto piece) {
            output_.append(reinterpret_cast<const char*>(piece.data()), piece.size());
            return output_.size() < enough;
        });
    }

    testing::TempTree tree_;
    std::unique_ptr<FilterPrograms> programs_ =
        makeLinuxFilterPrograms(std::chrono::milliseconds(0), tree_.path("bin").native());
    std::string output_;
    Bytes nothing_{""};
};

TEST_F(LinuxFilterProgramsTest, AProgramReadsTheFileFromItsBeginningAndSeesNothingElse)
{
    script("show", "cat; printf '|%s' \"$@\"; printf '|%s' \"$HOME$KELVANE_SECRET\"; ls /proc/self/fd | wc -l; cat");
    ::setenv("KELVANE_SECRET", "secret", 1);
    Bytes bytes("bytes");
    EXPECT_TRUE(run("show", bytes, {"two words", "$(id)", ""}).ok());
    EXPECT_EQ(output_, "bytes|two words|$(id)||4\n");
    const auto file = tree_.write("file", "of a file");
    auto own = linux_os::DescriptorFile::make(linux_os::FileHandle(::open(file.c_str(), O_RDONLY | O_CLOEXEC)));
    ASSERT_TRUE(own.ok());
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(run("show", **own).ok());
        EXPECT_TRUE(output_.starts_with("of a file|")) << output_;
    }
    ::unsetenv("KELVANE_SECRET");
}

TEST_F(LinuxFilterProgramsTest, FailuresAreTold)
{
    script("fail", "echo partly; echo message >&2; exit 3");
    script("die", "kill -SEGV $$");
    EXPECT_FALSE(programs_->installed("none"));
    EXPECT_TRUE(programs_->installed("fail"));
    EXPECT_EQ(run("none", nothing_).error().kind, ErrorKind::notFound);
    const Status failed = run("fail", nothing_);
    EXPECT_EQ(failed.error().kind, ErrorKind::invalid);
    EXPECT_EQ(failed.error().systemCode, 3);
    EXPECT_EQ(output_, "partly\n");
    EXPECT_EQ(run("die", nothing_).error().kind, ErrorKind::io);
    EXPECT_EQ(run("fail", nothing_, {std::string("a\0b", 3)}).error().kind, ErrorKind::invalid);
}

TEST_F(LinuxFilterProgramsTest, AProgramEndsWhenEnoughWasHeardOrItTakesTooLong)
{
    script("endless", "while :; do echo line; done");
    script("silent", "exec sleep 1000");
    script("lingering", "exec >&-; exec sleep 1000");
    const auto begun = steady_clock::now();
    EXPECT_TRUE(run("endless", nothing_, {}, 100'000).ok());
    EXPECT_GE(output_.size(), 100'000u);
    programs_ = makeLinuxFilterPrograms(100ms, tree_.path("bin").native());
    EXPECT_EQ(run("silent", nothing_).error().kind, ErrorKind::io);
    EXPECT_EQ(run("lingering", nothing_).error().kind, ErrorKind::io);
    EXPECT_EQ(run("endless", nothing_).error().kind, ErrorKind::io);
    EXPECT_LT(steady_clock::now() - begun, 60s);
}

}  // namespace
}  // namespace kelvane
