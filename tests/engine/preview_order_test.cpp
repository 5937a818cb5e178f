#include "engine/preview_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "engine/described_preview.h"
#include "props/made_up_previews.h"

namespace kelvane {
namespace {

using testing::Scene;

std::vector<const PreviewSignature*> pointers(const std::vector<PreviewSignature>& signatures)
{
    std::vector<const PreviewSignature*> all;
    for (const PreviewSignature& signature : signatures)
        all.push_back(&signature);
    return all;
}

// Members of one family follow one another; a few cells of each are its own.
std::vector<PreviewSignature> families(unsigned count, unsigned members)
{
    std::mt19937 random(1);
    std::vector<PreviewSignature> all;
    for (unsigned family = 0; family < count; ++family) {
        PreviewSignature first;
        first.width = static_cast<std::uint16_t>(family % 3 == 0 ? 200 : 180);
        first.height = 150;
        const Scene scene(family);
        for (std::size_t i = 0; i < first.brightness.size(); ++i) {
            const auto colour = scene.at(static_cast<double>(i % 16) / 16, static_cast<double>(i / 16) / 16);
            first.brightness[i] = static_cast<std::uint8_t>(std::clamp(colour.green, 0, 255));
        }
        for (auto& value : first.colours)
            value = static_cast<std::uint8_t>(100 + random() % 60);
        for (unsigned member = 0; member < members; ++member) {
            all.push_back(first);
            for (int change = 0; change < 8; ++change)
                all.back().brightness[random() % 256] ^= 8;
        }
    }
    return all;
}

TEST(PreviewIndex, FindsWhatHoldingAllAgainstAllFinds)
{
    std::vector<PreviewSignature> signatures;
    for (unsigned i = 0; i < 90; ++i) {
        const Scene scene(i / 3);
        signatures.push_back(PreviewSignature::of(*scene.preview(48, 36, 0.9 + 0.1 * (i % 3), 0.01 * (i % 2))));
    }
    const CancelFlag never;
    const auto alikes = AlikePreviews::find(pointers(signatures), 2, never);
    ASSERT_TRUE(alikes);
    std::size_t found = 0;
    for (std::uint32_t i = 0; i < alikes->size(); ++i) {
        std::set<std::uint32_t> plain, indexed;
        for (std::uint32_t j = 0; j < signatures.size(); ++j)
            if (j != i && secondLook(signatures[i], signatures[j]).agrees)
                plain.insert(j);
        for (const AlikePreview& alike : alikes->of(i))
            indexed.insert(alike.number);
        EXPECT_EQ(indexed, plain) << i;
        EXPECT_TRUE(std::is_sorted(alikes->of(i).begin(), alikes->of(i).end()));
        found += indexed.size();
    }
    EXPECT_GE(found, 100u);
}

TEST(PreviewOrder, PutsFamiliesSideBySide)
{
    constexpr unsigned members = 4;
    const auto signatures = families(300, members);
    const CancelFlag never;
    const auto alikes = AlikePreviews::find(pointers(signatures), 2, never);
    const auto places = placesByLooks(*alikes, never);
    ASSERT_TRUE(places);
    std::vector<std::uint32_t> sorted = *places;
    std::ranges::sort(sorted);
    for (std::uint32_t i = 0; i < sorted.size(); ++i)
        ASSERT_EQ(sorted[i], i) << "every place once";
    for (std::size_t i = 0; i < places->size(); i += members) {
        const auto [least, most] = std::minmax_element(places->begin() + static_cast<std::ptrdiff_t>(i),
                                                       places->begin() + static_cast<std::ptrdiff_t>(i + members));
        ASSERT_EQ(*most - *least, members - 1) << i;
    }
    for (std::size_t i = 0; i < signatures.size(); ++i)
        for (const std::size_t j : {std::size_t{0}, std::size_t{members}})
            if (signatures[i].width < signatures[j].width) {
                ASSERT_LT((*places)[i], (*places)[j]) << "sizes come first";
            }
}

TEST(PreviewOrder, EndsWhenCancelled)
{
    const auto signatures = families(50, 3);
    CancelFlag cancel;
    const auto alikes = AlikePreviews::find(pointers(signatures), 2, cancel);
    cancel.cancel();
    EXPECT_FALSE(AlikePreviews::find(pointers(signatures), 2, cancel));
    EXPECT_FALSE(placesByLooks(*alikes, cancel));
}

// Noise is like a little of everything, so that no box of the index can be left out: seconds go by where it is whole.
std::vector<PreviewSignature> noise(unsigned count)
{
    std::mt19937 random(1);
    std::vector<PreviewSignature> all(count);
    for (PreviewSignature& signature : all) {
        signature.width = signature.height = 200;
        for (auto& value : signature.brightness)
            value = static_cast<std::uint8_t>(random());
        for (auto& value : signature.colours)
            value = static_cast<std::uint8_t>(120 + random() % 16);
    }
    return all;
}

TEST(PreviewOrder, EndsSoonWhereverItIsCancelled)
{
    using std::chrono::steady_clock;
    const auto signatures = noise(20'000);
    const auto all = pointers(signatures);
    for (const int milliseconds : {1, 5, 20, 80, 300}) {
        CancelFlag cancel;
        std::atomic<steady_clock::time_point> cancelled;
        std::thread person([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            cancelled = steady_clock::now();
            cancel.cancel();
        });
        const auto alikes = AlikePreviews::find(all, 2, cancel);
        const auto places = alikes ? placesByLooks(*alikes, cancel) : std::nullopt;
        const auto ended = steady_clock::now();
        person.join();
        EXPECT_FALSE(places) << "it took no " << milliseconds << " ms";
        // Generous: the machine may be busy, and the sanitizers slow.
        EXPECT_LT(ended - cancelled.load(), std::chrono::seconds(1)) << milliseconds;
    }
}

TEST(RecentPreviews, LetGoOfThoseUsedLeastRecently)
{
    std::vector<Ref<DescribedPreview>> described;
    RecentPreviews recent(3 * (10 * 10 * 4 + sizeof(CachedBitmap)));
    const auto put = [&](int number) {
        const auto preview = testing::flatPreview({number, 0, 0}, 10, 10);
        described.push_back(Ref<DescribedPreview>(new DescribedPreview(PreviewSignature::of(*preview))));
        recent.put(described.back(), preview);
    };
    put(0);
    put(1);
    put(2);
    EXPECT_TRUE(recent.find(*described[0]));
    put(3);
    EXPECT_TRUE(recent.find(*described[0])) << "used just before";
    EXPECT_FALSE(recent.find(*described[1]));
    EXPECT_EQ(std::to_integer<int>(recent.find(*described[3])->pixels()[2]), 3);
}

TEST(RecentPreviews, GoOnAfterOneThatCouldNotBeMade)
{
    const auto preview = testing::flatPreview({1, 2, 3}, 10, 10);
    const Ref<const DescribedPreview> described(new DescribedPreview(PreviewSignature::of(*preview)));
    RecentPreviews recent(1 << 20);
    std::atomic<bool> making = false;
    std::thread failing([&] {
        const auto fail = [&]() -> Ref<CachedBitmap> {
            making = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            throw std::bad_alloc();
        };
        EXPECT_THROW(static_cast<void>(recent.obtain(described, fail)), std::bad_alloc);
    });
    while (!making)
        std::this_thread::yield();
    const auto waited = recent.obtain(described, [&] { return preview; });
    EXPECT_EQ(waited.get(), preview.get());
    failing.join();
}

// Neighbours that are scored at one time had their common picture fetched twice.
TEST(RecentPreviews, AreMadeOnceForAllThreadsThatWantThem)
{
    const auto preview = testing::flatPreview({1, 2, 3}, 10, 10);
    const Ref<const DescribedPreview> described(new DescribedPreview(PreviewSignature::of(*preview)));
    RecentPreviews recent(1 << 20);
    EXPECT_FALSE(recent.obtain(described, [] { return Ref<CachedBitmap>(); }));
    std::atomic<int> made = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            const auto got = recent.obtain(described, [&] {
                ++made;
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                return preview;
            });
            EXPECT_EQ(got.get(), preview.get());
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(made, 1) << "what was not to be had before is tried again, once";
}

}  // namespace
}  // namespace kelvane
