#include "cleanup/journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "platform/platform.h"
#include "support/faulty_output.h"
#include "support/journal_samples.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::FaultyOutput;
using testing::JournalSamples;
using testing::TempTree;

class JournalTest : public ::testing::Test {
protected:
    std::unique_ptr<JournalWriter> begin() { return std::move(journals_.begin(CleanupAction::link, {77}).value()); }

    // A run with one entry that is done.
    RunNumber endedRun()
    {
        const auto writer = begin();
        const auto entry = writer->intend(samples_.intent());
        EXPECT_TRUE(entry && writer->finish(*entry, EntryState::done, LinkKind::hard) && writer->end());
        return writer->number();
    }

    std::vector<RunNumber> list() { return journals_.list().value(); }
    std::vector<RunNumber> unfinished() { return journals_.unfinished().value(); }

    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    JournalSamples samples_{9};
    Journals journals_{platform_->files(), platform_->output(), tree_.path("state/kelvane/cleanups")};
};

constexpr RunNumber run(std::uint32_t number)
{
    return static_cast<RunNumber>(number);
}

// One step of a writer, at random, and the same in memory.
class RandomSteps {
public:
    explicit RandomSteps(unsigned seed) : samples_(seed) {}

    [[nodiscard]] const std::vector<JournalEntry>& entries() const { return entries_; }

    [[nodiscard]] Status step(JournalWriter& writer)
    {
        if (entries_.empty() || samples_.below(3) == 0)
            return intend(writer);
        const std::uint32_t at = samples_.below(static_cast<unsigned>(entries_.size()));
        const auto number = static_cast<EntryNumber>(at);
        switch (entries_[at].state) {
        case EntryState::intended:
            return samples_.below(3) == 0 ? place(writer, number, entries_[at]) : finish(writer, number, entries_[at]);
        case EntryState::done:
            return intendUndo(writer, number, entries_[at]);
        case EntryState::undoIntended:
            return finishUndo(writer, number, entries_[at]);
        case EntryState::notDone:
        case EntryState::undone:
            break;
        }
        return writer.flush();
    }

private:
    Status intend(JournalWriter& writer)
    {
        JournalEntry entry;
        entry.intent = samples_.intent();
        const auto number = writer.intend(entry.intent);
        if (!number)
            return number.error();
        EXPECT_EQ(static_cast<std::size_t>(*number), entries_.size());
        entries_.push_back(std::move(entry));
        return {};
    }
    Status place(JournalWriter& writer, EntryNumber number, JournalEntry& entry)
    {
        entry.trashed = testing::native("/" + samples_.name(30));
        return writer.placing(number, entry.trashed);
    }
    Status finish(JournalWriter& writer, EntryNumber number, JournalEntry& entry)
    {
        entry.state = samples_.below(2) == 0 ? EntryState::done : EntryState::notDone;
        entry.link = static_cast<LinkKind>(samples_.below(5));
        std::filesystem::path trashed;
        if (samples_.below(2) == 0)
            entry.trashed = trashed = testing::native("/" + samples_.name(30));
        return writer.finish(number, entry.state, entry.link, trashed);
    }
    Status intendUndo(JournalWriter& writer, EntryNumber number, JournalEntry& entry)
    {
        entry.state = EntryState::undoIntended;
        entry.undoTemporary = testing::native(samples_.name(20));
        return writer.intendUndo(number, entry.undoTemporary);
    }
    Status finishUndo(JournalWriter& writer, EntryNumber number, JournalEntry& entry)
    {
        entry.state = samples_.below(2) == 0 ? EntryState::undone : EntryState::done;
        return writer.finishUndo(number, entry.state);
    }

    JournalSamples samples_;
    std::vector<JournalEntry> entries_;
};

TEST_F(JournalTest, WhatIsWrittenIsReadAtOnceAndByLaterProcesses)
{
    RandomSteps steps(1);
    auto writer = begin();
    for (int i = 0; i < 600; ++i) {
        ASSERT_TRUE(steps.step(*writer));
        if (i % 100 != 50)
            continue;
        const auto now = journals_.read(run(1));  // while it is being written
        ASSERT_TRUE(now.ok());
        EXPECT_TRUE(now->entries == steps.entries() && !now->damaged && !now->ended) << i;
        writer.reset();
        auto opened = journals_.reopen(run(1));
        ASSERT_TRUE(opened.ok());
        EXPECT_TRUE(opened->run.entries == steps.entries());
        writer = std::move(opened->writer);
    }
    const JournalRun all = journals_.read(run(1)).value();
    EXPECT_EQ(all.number, run(1));
    EXPECT_EQ(all.action, CleanupAction::link);
    EXPECT_EQ(all.started, FileTime{77});
    ASSERT_TRUE(writer->end());
    EXPECT_THAT(unfinished(), ElementsAre(run(1))) << "entries are undecided";
}

TEST_F(JournalTest, NamesTellWhichRunsAreUnfinished)
{
    EXPECT_THAT(list(), ElementsAre());
    EXPECT_EQ(journals_.read(run(1)).error().kind, ErrorKind::notFound);
    EXPECT_EQ(journals_.reopen(run(1)).error().kind, ErrorKind::notFound);
    EXPECT_EQ(endedRun(), run(1));
    const auto second = begin();
    for (const char* other : {"0.kvrun", "01.kvrun", "7.kvrun.new", "x.kvrun.open", "99999999999.kvrun", "8"})
        tree_.write(std::string("state/kelvane/cleanups/") + other, "");
    EXPECT_THAT(list(), ElementsAre(run(1), run(2)));
    EXPECT_THAT(unfinished(), ElementsAre(run(2)));
    EXPECT_TRUE(journals_.read(run(1)).value().ended);

    {
        auto opened = std::move(journals_.reopen(run(1)).value());
        ASSERT_TRUE(opened.writer->end());
        EXPECT_THAT(unfinished(), ElementsAre(run(2))) << "looking changes nothing";
        ASSERT_TRUE(opened.writer->intendUndo(EntryNumber{0}, testing::native("copy")));
        EXPECT_THAT(unfinished(), ElementsAre(run(1), run(2)));
        EXPECT_FALSE(journals_.read(run(1)).value().ended);
        ASSERT_TRUE(opened.writer->finishUndo(EntryNumber{0}, EntryState::undone) && opened.writer->end());
    }
    EXPECT_THAT(unfinished(), ElementsAre(run(2)));
    EXPECT_EQ(journals_.read(run(1)).value().entries.at(0).state, EntryState::undone);
}

TEST_F(JournalTest, OneWriterAtATime)
{
    auto writer = begin();
    EXPECT_EQ(journals_.reopen(run(1)).error().kind, ErrorKind::tooManyOpen);
    EXPECT_TRUE(writer->end());
    EXPECT_EQ(journals_.reopen(run(1)).error().kind, ErrorKind::tooManyOpen) << "it may be gone on with";
    writer.reset();
    EXPECT_TRUE(journals_.reopen(run(1)).ok());
}

TEST_F(JournalTest, RunsThatBeginAtOnceGetNumbersOfTheirOwn)
{
    constexpr int many = 6;
    std::vector<std::vector<RunNumber>> numbers(many);
    std::vector<std::thread> threads;
    for (auto& own : numbers) {
        threads.emplace_back([&own, this] {
            for (int i = 0; i < 4; ++i) {
                const auto writer = journals_.begin(CleanupAction::recycle, {}).value();
                own.push_back(writer->number());
                EXPECT_TRUE(i % 2 == 0 || writer->end());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::vector<RunNumber> all;
    for (const auto& own : numbers)
        all.insert(all.end(), own.begin(), own.end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(all, list());
    EXPECT_EQ(all.size(), 4U * many);
    EXPECT_EQ(unfinished().size(), 2U * many);
}

TEST_F(JournalTest, OnlyOldRunsThatEndedAreForgotten)
{
    const auto first = begin();
    for (int i = 0; i < 4; ++i)
        endedRun();
    const auto opened = std::move(journals_.reopen(run(2)).value());
    ASSERT_TRUE(journals_.prune(2));
    EXPECT_THAT(list(), ElementsAre(run(1), run(2), run(4), run(5)));
    EXPECT_EQ(endedRun(), run(6));
}

TEST_F(JournalTest, WhatMakesNoSenseIsRefusedByItself)
{
    const auto writer = begin();
    ASSERT_TRUE(writer->intend(samples_.intent()).ok());
    const EntryNumber first{0};
    const std::filesystem::path path(testing::native("/x"));
    EXPECT_EQ(writer->finish(EntryNumber{1}, EntryState::done).error().kind, ErrorKind::invalid);
    EXPECT_EQ(writer->finish(first, EntryState::undone).error().kind, ErrorKind::invalid);
    EXPECT_EQ(writer->finishUndo(first, EntryState::done).error().kind, ErrorKind::invalid);
    EXPECT_EQ(writer->intendUndo(first, {}).error().kind, ErrorKind::invalid);
    JournalIntent large = samples_.intent();
    large.metadata.attributes = {{"user.large", std::vector<std::byte>(17 * 1024 * 1024)}};
    EXPECT_EQ(writer->intend(large).error().kind, ErrorKind::notSupported);
    EXPECT_TRUE(writer->finish(first, EntryState::done));
    EXPECT_EQ(writer->placing(first, path).error().kind, ErrorKind::invalid);
    EXPECT_TRUE(writer->end());
    const JournalRun all = journals_.read(run(1)).value();
    EXPECT_TRUE(all.ended && !all.damaged && all.entries.size() == 1);
}

// A process is killed in the middle of a record: what it had written counts, and others write on behind it.
TEST_F(JournalTest, ARunThatWasCutOffIsGoneOnWith)
{
    const std::string name = "state/kelvane/cleanups/1.kvrun.open";
    std::vector<JournalEntry> entries;
    {
        const auto writer = begin();
        for (int i = 0; i < 3; ++i) {
            entries.push_back({samples_.intent(), EntryState::intended, LinkKind::none, {}, {}});
            ASSERT_TRUE(writer->intend(entries.back().intent).ok());
        }
    }
    const std::string whole = tree_.read(name);
    for (const std::size_t lost : {std::size_t{1}, whole.size() - 10, whole.size()}) {
        tree_.write(name, std::string_view(whole).substr(0, whole.size() - lost));
        const std::vector<JournalEntry> left(entries.begin(), entries.begin() + (lost == 1 ? 2 : 0));
        auto opened = std::move(journals_.reopen(run(1)).value());
        EXPECT_TRUE(opened.run.damaged && opened.run.entries == left) << lost;
        EXPECT_EQ(tree_.read(name).size(), whole.size() - lost) << "looking changes nothing";
        for (std::uint32_t i = 0; i < left.size(); ++i)
            EXPECT_TRUE(opened.writer->finish(static_cast<EntryNumber>(i), EntryState::notDone));
        EXPECT_EQ(static_cast<std::size_t>(opened.writer->intend(entries[0].intent).value()), left.size());
        EXPECT_TRUE(opened.writer->flush());
        const JournalRun now = journals_.read(run(1)).value();
        EXPECT_TRUE(now.damaged) << "still told: entries may be missing";
        EXPECT_EQ(now.entries.size(), left.size() + 1);
    }
}

// Begins a run, does a little in it and ends it; how far it came.
struct Way {
    std::size_t intended = 0;
    bool began = false;
    bool flushed = false;
    bool ended = false;
    bool senselessly = false;  // something succeeded after a failure
};

Way goThrough(Journals& journals, const std::vector<JournalIntent>& intents)
{
    Way way;
    auto begun = journals.begin(CleanupAction::link, {});
    if (!begun)
        return way;
    way.began = true;
    JournalWriter& writer = **begun;
    bool ok = true;
    const auto took = [&](const Status& status) {
        way.senselessly = way.senselessly || (!ok && status.ok());
        ok = ok && status.ok();
        return ok;
    };
    for (const JournalIntent& intent : intents) {
        const auto entry = writer.intend(intent);
        way.intended += took(entry ? Status() : entry.error()) ? 1 : 0;
    }
    way.flushed = took(writer.flush());
    for (std::uint32_t i = 0; i < way.intended; ++i)
        took(writer.finish(static_cast<EntryNumber>(i), EntryState::done, LinkKind::hard));
    way.ended = took(writer.end());
    return way;
}

TEST_F(JournalTest, AFailureAnywhereStopsTheWritingAndLosesNothingBefore)
{
    const std::vector<JournalIntent> intents{samples_.intent(), samples_.intent()};
    for (const auto fault : {FaultyOutput::Fault::once, FaultyOutput::Fault::killed}) {
        bool struck = true;
        for (int n = 1; struck; ++n) {
            SCOPED_TRACE(n);
            TempTree tree;
            FaultyOutput output(platform_->output());
            Journals journals(platform_->files(), output, tree.path("journals"));
            output.fail(fault, n);
            const Way way = goThrough(journals, intents);
            struck = output.failed();
            output.fail(FaultyOutput::Fault::none, 0);
            EXPECT_FALSE(way.senselessly);
            EXPECT_TRUE(way.ended || struck);
            const auto numbers = journals.list().value();
            EXPECT_TRUE(way.began || numbers.empty() || fault == FaultyOutput::Fault::killed)
                << "nothing is left of what did not begin";
            if (numbers.empty()) {
                EXPECT_FALSE(way.began);
                continue;
            }
            const auto opened = journals.reopen(numbers.at(0));
            ASSERT_TRUE(opened.ok());
            EXPECT_GE(opened->run.entries.size(), way.intended);
            EXPECT_LE(opened->run.entries.size(), intents.size());
            for (std::size_t i = 0; i < opened->run.entries.size(); ++i)
                EXPECT_EQ(opened->run.entries[i].intent, intents[i]);
            EXPECT_TRUE(!way.ended || opened->run.ended);
            EXPECT_TRUE(!way.ended || journals.unfinished()->empty());
        }
    }
}

}  // namespace
}  // namespace kelvane
