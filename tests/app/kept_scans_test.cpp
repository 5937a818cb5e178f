#include "app/kept_scans.h"

#include <gmock/gmock.h>

#include "support/settings_world.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::SettingsComputer;

CScanNode scan(std::u16string name, std::string roots)
{
    CScanNode definition;
    definition.setName(std::move(name));
    definition.roots = std::move(roots);
    return definition;
}

// "name roots" of each, "!" for a stale one.
std::vector<std::string> lines(const std::vector<KeptScan>& scans)
{
    std::vector<std::string> all;
    for (const KeptScan& kept : scans)
        all.push_back(toUtf8(kept.definition.name()) + ' ' + kept.definition.roots + (kept.stale ? "!" : ""));
    return all;
}

class KeptScans : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<CRegistryAccess> start()
    {
        auto access = std::make_unique<CRegistryAccess>(computer_.ports());
        access->chooseLocation({});
        access->load(computer_.questions);
        return access;
    }

    SettingsComputer computer_;
    const TextFolding& folding_ = computer_.folding;
    Settings settings_;
};

TEST_F(KeptScans, AreSavedUnderANameOnce)
{
    using enum KeptScanResult;
    const auto add = [&](const char16_t* name, const char* roots) {
        return addSavedScan(settings_, scan(name, roots), folding_);
    };
    EXPECT_EQ(add(u"Bücher", "/1"), done);
    EXPECT_EQ(add(u"Töne", "/2"), done);
    EXPECT_EQ(add(u" \t", "/3"), noName);
    EXPECT_EQ(add(u" BÜCHER ", "/4"), done);
    EXPECT_THAT(lines(settings_.savedScans), ElementsAre("BÜCHER /4", "Töne /2"));
    EXPECT_EQ(add(std::u16string(70'000, u'n').c_str(), "/5"), tooLong);

    EXPECT_EQ(renameSavedScan(settings_, u"töne", u"bücher", folding_), nameTaken);
    EXPECT_EQ(renameSavedScan(settings_, u"töne", u"  ", folding_), noName);
    EXPECT_EQ(renameSavedScan(settings_, u"none", u"new", folding_), notFound);
    EXPECT_EQ(renameSavedScan(settings_, u"bücher", u"Bücher", folding_), done) << "another case of its own name";
    EXPECT_EQ(renameSavedScan(settings_, u"töne", u"Musik", folding_), done);
    EXPECT_THAT(lines(settings_.savedScans), ElementsAre("Bücher /4", "Musik /2"));
    ASSERT_NE(findSavedScan(settings_, u"MUSIK", folding_), nullptr);
    EXPECT_EQ(findSavedScan(settings_, u"MUSIK", folding_)->definition.roots, "/2");
    EXPECT_EQ(findSavedScan(settings_, u"Töne", folding_), nullptr);

    EXPECT_EQ(removeSavedScan(settings_, u"Töne", folding_), notFound);
    EXPECT_EQ(removeSavedScan(settings_, u"bücher", folding_), done);
    EXPECT_THAT(lines(settings_.savedScans), ElementsAre("Musik /2"));
}

TEST_F(KeptScans, HistoryHasEachDefinitionOnceTheLatestFirst)
{
    for (int number = 0; number < 52; ++number)
        rememberScan(settings_, scan(u"h", std::to_string(number)), {1'000 + number});
    EXPECT_EQ(settings_.scanHistory.size(), 50u);
    EXPECT_EQ(settings_.scanHistory.back().definition.roots, "2");
    markStale(settings_, scan(u"other name", "30"));
    EXPECT_TRUE(settings_.scanHistory[21].stale);
    CScanNode fuzzy = scan(u"h", "30");
    fuzzy.set(scan_flag::fuzzy, true);
    markStale(settings_, fuzzy);
    rememberScan(settings_, fuzzy, {2'000});
    rememberScan(settings_, scan(u"again", "30"), {3'000});
    EXPECT_EQ(settings_.scanHistory.size(), 50u);
    settings_.scanHistory.resize(3);
    EXPECT_THAT(lines(settings_.scanHistory), ElementsAre("again 30", "h 30", "h 51")) << "stale no more";
    EXPECT_EQ(settings_.scanHistory[0].when, FileTime{3'000});
    EXPECT_FALSE(removeFromHistory(settings_, 3));
    EXPECT_TRUE(removeFromHistory(settings_, 1));
    EXPECT_THAT(lines(settings_.scanHistory), ElementsAre("again 30", "h 51"));
    clearHistory(settings_);
    EXPECT_THAT(settings_.scanHistory, IsEmpty());
}

TEST_F(KeptScans, SurviveTheRunAndACleanedOneGoesAtOnce)
{
    const auto first = start();
    for (const char16_t* name : {u"Kept", u"Cleaned"})
        ASSERT_EQ(addSavedScan(first->settings(), scan(name, "/r"), folding_), KeptScanResult::done);
    rememberScan(first->settings(), scan(u"Cleaned", "/r"), {1'000});
    markStale(first->settings(), scan(u"Cleaned", "/r"));
    ASSERT_EQ(first->save(), SettingsCode::done);

    const auto second = start();
    EXPECT_THAT(lines(second->settings().savedScans), ElementsAre("Kept /r", "Cleaned /r"));
    EXPECT_THAT(lines(second->settings().scanHistory), ElementsAre("Cleaned /r!"));
    computer_.registry.fault = SettingsCode::accessDenied;
    EXPECT_EQ(dropCleanedScan(*second, u"none"), SettingsCode::done);
    EXPECT_EQ(dropCleanedScan(*second, u"cleaned"), SettingsCode::accessDenied);
    computer_.registry.fault = SettingsCode::done;
    EXPECT_THAT(lines(start()->settings().savedScans), ElementsAre("Kept /r", "Cleaned /r"));

    const auto third = start();
    third->settings().persistence = PersistenceMode::bookkeepingOnly;
    EXPECT_EQ(dropCleanedScan(*third, u"cleaned"), SettingsCode::done);
    EXPECT_THAT(lines(third->settings().savedScans), ElementsAre("Kept /r"));
    EXPECT_THAT(lines(start()->settings().savedScans), ElementsAre("Kept /r", "Cleaned /r")) << "nothing is kept";
    EXPECT_EQ(dropCleanedScan(*start(), u"cleaned"), SettingsCode::done);
    EXPECT_THAT(lines(start()->settings().savedScans), ElementsAre("Kept /r"));
}

}  // namespace
}  // namespace kelvane
