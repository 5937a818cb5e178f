// Similar documents grouped pair by pair, and with the matches found ahead: the same groups, scores included.
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <random>

#include "engine/document_world.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::madeUpText;
using testing::RecordingSink;

// Families of documents: copies, edited copies of edited copies, further names; many of one size.
class Library {
public:
    explicit Library(unsigned seed) : random_(seed) {}

    void fill(DocumentWorld& world, int files)
    {
        for (int i = 0; i < files; ++i)
            addOne(world, i);
    }

private:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

    void addOne(DocumentWorld& world, int number)
    {
        const std::string path = "/" + std::to_string(number) + (below(3) == 0 ? ".md" : ".txt");
        const std::size_t kind = below(10);
        if (!texts_.empty() && kind == 0) {
            const std::string existing = anyPath();
            world.files.addHardLink(path, existing);
            world.extraction.setPlain(path, texts_[existing]);
            texts_[path] = texts_[existing];
            return;
        }
        std::u16string text = texts_.empty() || kind == 9 ? madeUpText(static_cast<unsigned>(random_()), freshLength())
                                                          : texts_[anyPath()];
        if (kind > 2 && kind < 9)
            edit(text);
        world.addPlain(path, text);
        if (below(12) == 0)
            world.extraction.setPlain(path, u"too little to be compared");
        texts_[path] = text;
    }

    std::size_t freshLength() { return 1600 + 150 * below(4); }

    void edit(std::u16string& text)
    {
        const std::size_t step = 4 + below(40);
        for (std::size_t i = below(step); i < text.size(); i += step)
            text[i] = static_cast<char16_t>(u'a' + below(26));
        if (below(3) == 0)
            text.insert(below(text.size()), madeUpText(static_cast<unsigned>(random_()), below(120)));
    }

    const std::string& anyPath()
    {
        return std::next(texts_.begin(), static_cast<std::ptrdiff_t>(below(texts_.size())))->first;
    }

    std::mt19937 random_;
    std::map<std::string, std::u16string> texts_;
};

RecordingSink groupLibrary(DocumentWorld& world, const ScanCriteria& by)
{
    world.begin();
    CandidateList list;
    world.gather(list);
    RecordingSink sink;
    const std::int64_t rows = world.group(by, list, sink);
    EXPECT_EQ(rows, static_cast<std::int64_t>(sink.rows.size()));
    return sink;
}

// Groups that hold two files which do not match each other: chains.
int chainsIn(const RecordingSink& sink, DocumentWorld& world, const ScanCriteria& by)
{
    int chains = 0;
    for (const auto& members : sink.groups()) {
        Candidate first = world.file(members.front());
        Candidate last = world.file(members[1]);  // found last
        chains += world.documents->compare(by, first, last, world.cancel).score < by.similarity ? 1 : 0;
    }
    return chains;
}

TEST(RandomDocuments, GroupTheSamePairByPairAndFoundAhead)
{
    constexpr std::int32_t similarities[] = {85, 350, 550};  // the last ones leave the most edited copies apart
    int chains = 0;
    std::size_t rows = 0;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        DocumentWorld world;
        Library(seed).fill(world, 30);
        for (const std::uint32_t flags : {0u, scan_flag::sameType}) {
            ScanCriteria by = world.alike(similarities[seed % 3], flags);
            by.options.exhaustive = true;
            ScanCriteria pairwise = by;
            pairwise.options.classifyAhead = false;
            const RecordingSink plain = groupLibrary(world, pairwise);
            chains += chainsIn(plain, world, by);
            rows += plain.rows.size();
            for (const unsigned threads : {1u, 4u}) {
                world.options.threads = threads;
                EXPECT_EQ(groupLibrary(world, by).rows, plain.rows) << "seed " << seed << ", " << threads;
            }
        }
    }
    EXPECT_GT(rows, 200u);
    EXPECT_GT(chains, 0) << "no group was a chain";
}

TEST(RandomDocuments, ACancelEndsTheComparingWhereverItComes)
{
    class CancellingSink final : public GroupSink {
    public:
        CancellingSink(CancelFlag& cancel, int after) : cancel_(cancel), left_(after) {}
        Status add(const Candidate&, std::uint32_t, std::optional<std::int32_t>) override
        {
            if (--left_ <= 0)
                cancel_.cancel();
            return {};
        }

    private:
        CancelFlag& cancel_;
        int left_;
    };
    DocumentWorld world;
    Library(99).fill(world, 40);
    const ScanCriteria by = world.alike(85);
    const std::size_t all = groupLibrary(world, by).rows.size();
    ASSERT_GT(all, 8u);
    for (int after = 1; after < 8; ++after) {
        world.begin();
        CandidateList list;
        world.gather(list);
        CancellingSink sink(world.cancel, after);
        const GroupingPorts ports{*world.shell, *world.paths, world.properties, world.clock, world.observer,
                                  world.cancel, sink,         world.similar};
        EXPECT_EQ(groupCandidates(by, list, ports, {}, world.stats), -1);
        EXPECT_LT(world.stats.grouped, all);
        world.cancel.reset();
    }
}

}  // namespace
}  // namespace kelvane
