#include "cli/progress_line.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/fakes.h"

namespace kelvane {
namespace {

// What a terminal shows after the bytes so far: carriage returns go back, everything else overwrites.
std::string screen(const std::string& bytes)
{
    std::string line;
    std::size_t at = 0;
    for (const char c : bytes) {
        if (c == '\r') {
            at = 0;
            continue;
        }
        line.resize(std::max(line.size(), at + 1), ' ');
        line[at++] = c;
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

class Progress : public ::testing::Test {
protected:
    std::string after(ProgressLine& line, const ScanProgress& progress)
    {
        line.show(figuresOf(progress));
        return screen(err_.str());
    }
    testing::FakeClock clock_;
    std::ostringstream err_;
};

TEST_F(Progress, SaysWhatIsKnownAndNoMore)
{
    ProgressLine line(err_, clock_, 120);
    EXPECT_EQ(after(line, {ScanPhase::gathering, 12}), "phase 1: gathering files, 12 files");
    EXPECT_EQ(after(line, {ScanPhase::comparing, 5, 200, 2048, 8192}),
              "phase 3: discovering duplicates, 5 of 200 files, 2048 bytes read");
    line.show({"linking", 5, 200, 2048, 8192, false});
    EXPECT_EQ(screen(err_.str()), "linking, 5 of 200 files, 2048 bytes") << "handled, not read";
}

TEST_F(Progress, RateAndTimeLeftCountFromTheBeginningOfThePhase)
{
    ProgressLine line(err_, clock_, 120);
    line.show(figuresOf({ScanPhase::sorting, 0, 100}));
    clock_.milliseconds = 3'000;
    EXPECT_EQ(after(line, {ScanPhase::sorting, 4, 100}), "phase 2: sorting files, 4 of 100 files, at most 1:12 left");
    clock_.milliseconds = 60'000;
    line.show(figuresOf({ScanPhase::comparing, 0, 400, 0, 400 << 20}));
    clock_.milliseconds = 64'000;
    EXPECT_EQ(after(line, {ScanPhase::comparing, 10, 400, 40 << 20, 400 << 20}),
              "phase 3: discovering duplicates, 10 of 400 files, 40.0 MB read, 10.0 MB/s, at most 0:36 left");
}

TEST_F(Progress, AShorterLineLeavesNothingOfALongerOne)
{
    ProgressLine line(err_, clock_, 120);
    line.erase();
    EXPECT_EQ(err_.str(), "") << "nothing drawn, nothing to erase";
    line.show(figuresOf({ScanPhase::comparing, 1'000'000, 2'000'000}));
    EXPECT_EQ(after(line, {ScanPhase::gathering, 1}), "phase 1: gathering files, 1 file");
    line.erase();
    EXPECT_EQ(screen(err_.str()), "");
}

TEST_F(Progress, StaysWithinANarrowTerminal)
{
    ProgressLine line(err_, clock_, 40);
    EXPECT_EQ(after(line, {ScanPhase::comparing, 123'456, 999'999}), "phase 3: discovering duplicates");
    ProgressLine tiny(err_, clock_, 8);
    err_.str("");
    EXPECT_EQ(after(tiny, {ScanPhase::gathering, 1}), "phase 1");
}

}  // namespace
}  // namespace kelvane
