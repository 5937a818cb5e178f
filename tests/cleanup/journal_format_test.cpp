#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "cleanup/journal_reader.h"
#include "support/bytes_reader.h"
#include "support/journal_samples.h"

namespace kelvane {
namespace {

using Bytes = std::vector<std::byte>;
using testing::JournalSamples;

JournalReading readBytes(Bytes bytes)
{
    testing::BytesReader reader(std::move(bytes));
    return std::move(readJournal(reader).value());
}

void append(Bytes& bytes, const Bytes& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

// What a reader may say of a file: how far, and what of its entries.
struct Step {
    std::size_t length = 0;
    std::vector<JournalEntry> entries;
    bool ended = false;
};

struct Sample {
    Bytes bytes;
    std::vector<Step> steps;  // after the header and after each record
};

class SampleMaker {
public:
    SampleMaker() { add(chain_.header(RunNumber{3}, CleanupAction::recycle, {55})); }

    void entry(const JournalIntent& intent)
    {
        run_.entries.push_back({intent, EntryState::intended, LinkKind::none, {}, {}});
        record(intentBody(intent));
    }
    JournalEntry& at(std::size_t entry) { return run_.entries[entry]; }
    void record(const RecordBody& body) { add(chain_.record(body)); }
    void end()
    {
        run_.ended = true;
        record(plainBody(RecordType::end));
        run_.ended = false;
    }
    Sample take() { return std::move(sample_); }

private:
    void add(const Bytes& bytes)
    {
        append(sample_.bytes, bytes);
        sample_.steps.push_back({sample_.bytes.size(), run_.entries, run_.ended});
    }

    RecordChain chain_;
    JournalRun run_;
    Sample sample_;
};

// Every type of record once, also one of a later version.
Sample smallSample()
{
    JournalSamples samples(5);
    SampleMaker maker;
    for (int i = 0; i < 2; ++i)
        maker.entry(samples.intent());
    const auto trashed = std::filesystem::path(testing::native("/trash/x"));
    maker.at(0).trashed = trashed;
    maker.record(placingBody(EntryNumber{0}, trashed));
    maker.at(0).state = EntryState::done;
    maker.record(finishBody(EntryNumber{0}, EntryState::done, LinkKind::none, {}));
    maker.at(1).state = EntryState::done;
    maker.at(1).link = LinkKind::symbolic;
    maker.record(finishBody(EntryNumber{1}, EntryState::done, LinkKind::symbolic, {}));
    maker.record({std::byte{200}, std::byte{1}});
    maker.end();
    maker.at(1).state = EntryState::undoIntended;
    maker.at(1).undoTemporary = testing::native("copy");
    maker.record(undoIntentBody(EntryNumber{1}, testing::native("copy")));
    maker.at(1).state = EntryState::undone;
    maker.record(undoFinishBody(EntryNumber{1}, EntryState::undone));
    maker.end();
    return maker.take();
}

// The last step that is wholly within the first bytes.
const Step* stepWithin(const Sample& sample, std::size_t length)
{
    const Step* found = nullptr;
    for (const Step& step : sample.steps)
        found = step.length <= length ? &step : found;
    return found;
}

void expectStep(const JournalReading& reading, const Step* step, bool cut)
{
    ASSERT_EQ(reading.sound, step != nullptr ? step->length : 0);
    ASSERT_EQ(reading.cut, cut);
    ASSERT_EQ(reading.run.damaged, cut);
    ASSERT_EQ(reading.run.ended, step != nullptr && step->ended);
    const std::vector<JournalEntry> none;
    const auto& entries = step != nullptr ? step->entries : none;
    ASSERT_TRUE(reading.run.entries == entries);
}

TEST(JournalFormat, WhatComesBeforeACutCounts)
{
    const Sample sample = smallSample();
    for (std::size_t length = 0; length <= sample.bytes.size(); ++length) {
        SCOPED_TRACE(length);
        const auto end = sample.bytes.begin() + static_cast<std::ptrdiff_t>(length);
        const Step* step = stepWithin(sample, length);
        const bool cut = step == nullptr || step->length < length;
        ASSERT_NO_FATAL_FAILURE(expectStep(readBytes({sample.bytes.begin(), end}), step, cut));
    }
}

TEST(JournalFormat, WhatComesBeforeAnAlteredByteCounts)
{
    const Sample sample = smallSample();
    for (std::size_t at = 0; at < sample.bytes.size(); ++at) {
        for (const unsigned flipped : {0x01U, 0x80U, 0xFFU}) {
            SCOPED_TRACE(at);
            Bytes bytes = sample.bytes;
            bytes[at] ^= static_cast<std::byte>(flipped);
            ASSERT_NO_FATAL_FAILURE(expectStep(readBytes(bytes), stepWithin(sample, at), true));
        }
    }
}

TEST(JournalFormat, RecordsCountOnlyWhereTheyWereWritten)
{
    const Sample sample = smallSample();
    const auto part = [&](std::size_t first, std::size_t last) {
        const auto from = sample.bytes.begin();
        return Bytes(from + static_cast<std::ptrdiff_t>(sample.steps[first].length),
                     from + static_cast<std::ptrdiff_t>(sample.steps[last].length));
    };
    const Bytes header(sample.bytes.begin(), sample.bytes.begin() + journalHeaderLength);
    struct Case {
        const char* what;
        Bytes behindHeader;
        std::size_t step;
    };
    Bytes swapped = part(1, 2), twice = part(0, 1), zeros = part(0, 1);
    append(swapped, part(0, 1));
    append(twice, part(0, 1));
    append(zeros, Bytes(4096));
    for (const Case& test : {Case{"one left out", part(1, 3), 0}, Case{"in another order", swapped, 0},
                             Case{"one twice", twice, 1}, Case{"zeros, as a loss of power leaves them", zeros, 1}}) {
        SCOPED_TRACE(test.what);
        Bytes bytes = header;
        append(bytes, test.behindHeader);
        expectStep(readBytes(bytes), &sample.steps[test.step], true);
    }
}

// With sound checksums, so that only the reader's own checks are left.
TEST(JournalFormat, WhatNoWriterWritesIsDamage)
{
    JournalSamples samples(6);
    const RecordBody intent = intentBody(samples.intent());
    const EntryNumber first{0};
    const RecordBody done = finishBody(first, EntryState::done, LinkKind::hard, {});
    RecordBody unknownAction = intent, longName = intent, badState = done, shortRecord = done;
    unknownAction[1] = std::byte{3};
    longName[5] = std::byte{0x7F};
    badState[5] = std::byte{3};
    shortRecord.pop_back();
    const std::vector<std::vector<RecordBody>> cases{
        {unknownAction},
        {longName},
        {badState},
        {shortRecord},
        {finishBody(EntryNumber{1}, EntryState::done, LinkKind::none, {})},
        {finishBody(first, EntryState::intended, LinkKind::none, {})},
        {finishBody(first, EntryState::undone, LinkKind::none, {})},
        {undoIntentBody(first, {})},
        {undoFinishBody(first, EntryState::done)},
        {done, done},
        {done, placingBody(first, {})},
        {done, undoIntentBody(first, {}), finishBody(first, EntryState::done, LinkKind::none, {})},
        {placingBody(EntryNumber{0xFFFF'FFFF}, {})},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        RecordChain chain;
        Bytes bytes = chain.header(RunNumber{1}, CleanupAction::link, {});
        append(bytes, chain.record(intent));
        for (const RecordBody& body : cases[i])
            append(bytes, chain.record(body));
        const JournalReading reading = readBytes(bytes);
        EXPECT_TRUE(reading.cut);
        EXPECT_EQ(reading.run.entries.size(), 1U);
        EXPECT_EQ(reading.sound, bytes.size() - 8 - cases[i].back().size());
        RecordChain same(reading.chain);
        EXPECT_TRUE(same.accepts(cases[i].back(), chain.checksum())) << "the chain goes on at the last sound record";
    }
}

TEST(JournalFormat, ALaterFormatIsLeftAlone)
{
    RecordChain chain;
    Bytes bytes = chain.header(RunNumber{1}, CleanupAction::link, {});
    bytes[4] = std::byte{2};
    EXPECT_FALSE(chain.acceptsHeader(std::span(bytes).first(24), 0));
    for (std::size_t i = 0; i < 4; ++i)
        bytes[24 + i] = static_cast<std::byte>(chain.checksum() >> (8 * i) & 0xFF);
    testing::BytesReader reader(bytes);
    const auto reading = readJournal(reader);
    ASSERT_FALSE(reading.ok());
    EXPECT_EQ(reading.error().kind, ErrorKind::notSupported);
}

// The page shows bytes in columns, their meaning from column 62 on.
TEST(JournalFormat, TheDocumentedExampleIsWhatIsRead)
{
    std::ifstream page(KELVANE_JOURNAL_PAGE);
    std::string line;
    while (std::getline(page, line) && line != "## Example") {
    }
    Bytes shown;
    while (std::getline(page, line)) {
        std::istringstream digits(line.substr(0, 61));
        for (unsigned value = 0; line.size() > 4 && line[2] == ' ' && digits >> std::hex >> value;)
            shown.push_back(static_cast<std::byte>(value));
    }
    constexpr std::int64_t nanoseconds = 1'732'557'600'000'000'000;
    const FileTime time{133'770'312'000'000'000};
    JournalIntent intent;
    intent.action = CleanupAction::link;
    intent.item = testing::native("/home/ann/b");
    intent.itemWas = {{2049, 78}, FileKind::regular, {1000}, time};
    intent.kept = testing::native("/home/ann/a");
    intent.keptWas = {{2049, 77}, FileKind::regular, {1000}, time};
    intent.temporary = testing::native("b.kv1");
    intent.metadata = {1000, 1000, 0100644, nanoseconds, nanoseconds, {{"user.note", {std::byte{'x'}}}}};
    RecordChain chain;
    Bytes written = chain.header(RunNumber{7}, CleanupAction::link, {134'081'136'000'000'000});
    append(written, chain.record(intentBody(intent)));
    append(written, chain.record(finishBody(EntryNumber{0}, EntryState::done, LinkKind::hard, {})));
    append(written, chain.record(plainBody(RecordType::end)));
    EXPECT_EQ(written, shown);
    const JournalReading reading = readBytes(shown);
    EXPECT_TRUE(reading.run.ended && !reading.cut);
    EXPECT_EQ(reading.run.number, RunNumber{7});
    EXPECT_EQ(reading.run.action, CleanupAction::link);
    EXPECT_TRUE(reading.run.entries == std::vector<JournalEntry>({{intent, EntryState::done, LinkKind::hard, {}, {}}}));
}

}  // namespace
}  // namespace kelvane
