#include "engine/similar_documents.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <span>
#include <thread>

#include "base/utf.h"
#include "engine/document_world.h"
#include "engine/scan_driver.h"
#include "props/sim_doc_cache.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::madeUpText;
using ::testing::Pair;

class SimilarDocumentsTest : public ::testing::Test {
protected:
    // The descriptor of one file, as a run of its own would have it.
    Ref<const SimDocDescriptor> describe(const std::string& path)
    {
        world.begin();
        Candidate file = world.file(path);
        causes.clear();
        if (const auto cause = world.documents->describe(world.alike(85), file, world.cancel))
            causes.push_back(causeText(*cause));
        EXPECT_FALSE(world.documents->describe(world.alike(85), file, world.cancel)) << "nothing is done twice";
        return documentDescriptor(file, world.catalogue.stock(StockProperty::simDocDescriptor), {});
    }
    void useCache()
    {
        auto opened = world.caches.open(1 << 20);
        world.cache = std::move(*opened);
    }

    DocumentWorld world;
    std::vector<std::string> causes;
};

TEST_F(SimilarDocumentsTest, PackagesGoByTheirTextsAndPlainFilesByThemselves)
{
    world.files.addFile("/plain", std::string(9000, 'x'));
    world.files.addFile("/rich", std::string(500, 'x'));
    world.extraction.setPlain("/plain", madeUpText(1, 2000));
    world.extraction.setRich("/rich", madeUpText(1, 2000));
    EXPECT_EQ(describe("/plain")->size(), 9000u);
    EXPECT_EQ(describe("/rich")->size(), 2000u);
    world.options.sizesOnDisk = true;
    EXPECT_EQ(describe("/rich")->size(), 500u);
}

TEST_F(SimilarDocumentsTest, WhatARunFoundOutIsThereForTheNext)
{
    useCache();
    world.addPlain("/a", madeUpText(1, 2000));
    world.addPlain("/short", u"too little");
    world.files.addFile("/locked", "x");
    world.extraction.fail("/locked", TextOutcome::encrypted);
    world.files.addFile("/broken", "x");
    world.extraction.fail("/broken", TextOutcome::damaged, "no end of the file");
    std::vector<std::vector<std::string>> reasons;
    for (int run = 0; run < 2; ++run) {
        const auto descriptor = describe("/a");
        ASSERT_TRUE(descriptor);
        EXPECT_EQ(descriptor->text(), madeUpText(1, 2000));
        EXPECT_FALSE(describe("/short"));
        reasons.push_back(causes);
        EXPECT_FALSE(describe("/locked"));
        reasons.push_back(causes);
        EXPECT_FALSE(describe("/broken"));
        reasons.push_back(causes);
        EXPECT_EQ(world.extraction.extractions, 4) << "run " << run;
    }
    const auto first = std::span(reasons).first(3), second = std::span(reasons).last(3);
    EXPECT_THAT(first, ElementsAre(ElementsAre("too little text"), ElementsAre("protected by a password"),
                                   ElementsAre(HasSubstr("no end of the file"))));
    EXPECT_TRUE(std::ranges::equal(first, second));
}

TEST_F(SimilarDocumentsTest, NothingElseIsTakenFromTheCache)
{
    useCache();
    world.addPlain("/a", madeUpText(1, 2000));
    const auto takesText = [&] {
        const int before = world.extraction.extractions;
        EXPECT_TRUE(describe("/a"));
        return world.extraction.extractions > before;
    };
    EXPECT_TRUE(takesText());
    EXPECT_FALSE(takesText());
    world.files.setModified("/a", {12345});
    EXPECT_TRUE(takesText()) << "another state of the file";
    world.options.sizesOnDisk = true;
    EXPECT_TRUE(takesText()) << "another rule for its size";
    world.extraction.settings.textSample = 50'000;
    EXPECT_TRUE(takesText()) << "another setting";
    world.extraction.settings.whiteList = {"pdf"};
    EXPECT_TRUE(takesText()) << "another list";
    EXPECT_FALSE(takesText());
    for (auto& [file, kept] : world.caches.values)
        kept.second.resize(kept.second.size() / 2);
    EXPECT_TRUE(takesText()) << "a value that is not whole";
    for (auto& [file, kept] : world.caches.values)
        kept.second = {std::byte{200}};
    EXPECT_TRUE(takesText()) << "a value that nobody wrote";
}

TEST_F(SimilarDocumentsTest, WhatMayEndBetterIsTriedAgain)
{
    useCache();
    world.files.addFile("/a", "x");
    for (const auto outcome : {TextOutcome::timedOut, TextOutcome::unreadable, TextOutcome::toolMissing,
                               TextOutcome::crashed, TextOutcome::tooMuchMemory, TextOutcome::cancelled}) {
        world.extraction.fail("/a", outcome);
        EXPECT_FALSE(describe("/a"));
        EXPECT_EQ(causes.size(), 1u);
    }
    EXPECT_EQ(world.caches.put, 0);
    world.addPlain("/b", madeUpText(1, 2000));
    world.extraction.onExtract = [&](const std::string&) { world.files.setModified("/b", {777}); };
    EXPECT_TRUE(describe("/b"));
    EXPECT_EQ(world.caches.put, 0) << "it changed while it was read";
}

TEST_F(SimilarDocumentsTest, SizesTooDifferentEndTheWalkAndMissingDescriptorsDoNot)
{
    world.addPlain("/a", madeUpText(1, 2000));
    world.addPlain("/same", madeUpText(1, 2000));
    world.addPlain("/larger", madeUpText(1, 2400));
    world.addPlain("/short", u"short");
    const ScanCriteria by = world.alike(85);
    const auto compare = [&](const std::string& a, const std::string& b) {
        Candidate first = world.file(a);
        Candidate second = world.file(b);
        return world.documents->compare(by, first, second, world.cancel);
    };
    for (const auto numbers : {ProbeNumbers::shared, ProbeNumbers::perPair}) {
        world.begin(numbers);
        EXPECT_EQ(compare("/a", "/same").score, 697);
        const ContentScore larger = compare("/a", "/larger");
        EXPECT_FALSE(larger.comparable);
        EXPECT_TRUE(larger.endsWalk);
        EXPECT_EQ(larger.score, -12345);
        const ContentScore none = compare("/a", "/short");
        EXPECT_FALSE(none.comparable || none.endsWalk);
    }
}

TEST_F(SimilarDocumentsTest, SharedNumbersAreThoseOfOneComparison)
{
    std::u16string changed = madeUpText(1, 4000);
    for (std::size_t i = 0; i < changed.size(); i += 9)
        changed[i] = u'#';
    world.addPlain("/a", madeUpText(1, 4000));
    world.addPlain("/b", changed);
    const auto a = describe("/a");
    const auto b = describe("/b");
    for (const std::uint64_t seed : {1u, 2u, 3u}) {
        world.begin(ProbeNumbers::shared);
        Candidate first = world.file("/a");
        Candidate second = world.file("/b");
        seedRandom(seed);
        const std::int32_t score = world.documents->compare(world.alike(85), first, second, world.cancel).score;
        seedRandom(seed);
        SharedRandom random;
        EXPECT_EQ(score, compareDocuments(*a, *b, random));
    }
}

// The whole scan: files are described while others are found, the end of phase 1 sorts out.
class DocumentScan : public ::testing::Test {
protected:
    // Writes down what took no part; may cancel while texts are taken.
    class Observer final : public ScanObserver {
    public:
        void progress(const ScanProgress& progress) override
        {
            if (progress.phase == ScanPhase::describing && onDescribing)
                onDescribing();
        }
        void skipped(const SkippedItem& item) override { unread.push_back(testing::posix(testing::native(item.path))); }
        void undescribed(const SkippedItem& item) override { lines.push_back(item.error.detail); }
        std::vector<std::string> lines, unread;
        std::function<void()> onDescribing;
    };

    DocumentScan() { world.options.noticesSeen = notice_flag::firstScanShown; }

    ScanReport scan()
    {
        world.begin();
        ScanCriteria by = world.alike(85);
        by.definition.roots = "/";
        by.definition.set(scan_flag::protect, false);
        return runScan(by, {*world.shell, *world.paths, world.properties, world.clock, priority, observer, world.cancel,
                            sink, world.documents.get()});
    }

    DocumentWorld world;
    testing::FakePriority priority;
    testing::RecordingSink sink;
    Observer observer;
};

TEST_F(DocumentScan, FilesWithoutADescriptorLeaveAndAreCountedByTheReason)
{
    const std::u16string text = madeUpText(1, 3000);
    for (const char* path : {"/a.txt", "/m.txt", "/z.txt"})
        world.addPlain(path, text);
    world.addPlain("/b.txt", u"short");
    world.addPlain("/c.txt", u"short as well");
    for (const char* path : {"/d.pdf", "/e.pdf", "/f.none", "/g.pdf"})
        world.files.addFile(path, "x");
    world.extraction.fail("/d.pdf", TextOutcome::damaged, "no end");
    world.extraction.fail("/e.pdf", TextOutcome::unreadable);
    world.extraction.fail("/g.pdf", TextOutcome::timedOut);
    const ScanReport report = scan();
    EXPECT_EQ(report.rows, 3);
    EXPECT_THAT(sink.groups(), ElementsAre(ElementsAre("/a.txt", "/z.txt", "/m.txt")));
    EXPECT_EQ(report.candidates, 3u);
    EXPECT_THAT(report.walk.undescribed,
                ElementsAre(Pair("damaged", 1), Pair("reading it takes longer than the settings allow", 1),
                            Pair("too little text", 2)));
    EXPECT_TRUE(report.walk.undescribedFailed) << "another time may be long enough";
    EXPECT_THAT(observer.lines, ElementsAre("too little text", "too little text", "damaged (no end)",
                                            "reading it takes longer than the settings allow"));
    EXPECT_THAT(observer.unread, ElementsAre("/e.pdf"));
    EXPECT_EQ(report.walk.skipped, 1u);
    EXPECT_EQ(report.walk.withoutValue, 1u) << "the hopeless one";
}

TEST_F(DocumentScan, EachMemberHasTheScoreThatItJoinedBy)
{
    std::u16string text = madeUpText(1, 4000);
    for (const char* path : {"/a", "/b", "/c", "/d"}) {
        world.addPlain(path, text);
        for (std::size_t i = 0; i < 60; ++i)
            text[i * 50] = path[1] == 'a' ? u'1' : u'2';
    }
    ASSERT_EQ(scan().rows, 4);
    EXPECT_FALSE(sink.rows[0].score) << "the one that the group began with";
    std::vector<testing::RecordingSink::Row> chain(sink.rows.rbegin(), sink.rows.rend() - 1);
    chain.insert(chain.begin(), sink.rows.front());
    for (std::size_t i = 1; i < chain.size(); ++i) {
        Candidate reference = world.file(chain[i - 1].path);
        Candidate member = world.file(chain[i].path);
        EXPECT_EQ(chain[i].score, world.documents->compare(world.alike(85), reference, member, world.cancel).score);
    }
}

TEST_F(DocumentScan, CancellingWhileTextsAreTakenEndsAtOnce)
{
    world.extraction.blocked = true;
    for (int i = 0; i < 20; ++i)
        world.addPlain("/" + std::to_string(i), madeUpText(1, 2000));
    std::chrono::steady_clock::time_point cancelled;
    observer.onDescribing = [&] {
        cancelled = std::chrono::steady_clock::now();
        world.cancel.cancel();
    };
    std::jthread time([&](const std::stop_token& stop) {
        while (!stop.stop_requested())
            world.clock.milliseconds += 101;
    });
    EXPECT_EQ(scan().rows, -1);
    EXPECT_LT(std::chrono::steady_clock::now() - cancelled, std::chrono::seconds(2));
    EXPECT_LE(world.extraction.extractions, 16) << "nothing was begun after the cancel";
    EXPECT_THAT(sink.rows, IsEmpty());
}

}  // namespace
}  // namespace kelvane
