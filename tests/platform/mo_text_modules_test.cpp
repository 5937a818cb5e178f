#include "platform/mo_text_modules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/mo_catalogue.h"
#include "support/memory_file_system.h"
#include "support/mo_maker.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::makeMo;
using ::testing::Pair;

TEST(LanguageChoice, FollowsTheVariablesInTheirOrder)
{
    struct Case {
        LocaleVariables variables;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {{"", "", "", ""}, {}},
        {{"", "", "", "de_AT.UTF-8"}, {"de_AT", "de"}},
        {{"", "", "fr_FR", "de_DE"}, {"fr_FR", "fr"}},
        {{"", "it", "fr_FR", "de_DE"}, {"it"}},
        {{"nl:de_CH", "", "", "fr_FR.UTF-8"}, {"nl", "de_CH", "de"}},
        {{"nl:en:de", "", "", "fr_FR.UTF-8"}, {"nl"}},
        {{"de", "", "", "en_GB.UTF-8"}, {"de"}},
        {{"de", "C", "", "de_DE"}, {}},
        {{"de", "", "", "C.UTF-8"}, {}},
        {{"", "", "", "sr_RS.UTF-8@latin"}, {"sr_RS@latin", "sr@latin", "sr_RS", "sr"}},
        {{"../etc", "", "", "de"}, {}},
    };
    for (const Case& one : cases)
        EXPECT_EQ(wantedLanguages(one.variables), one.names) << one.variables.language << ' ' << one.variables.lang;
}

class MoTextModules : public ::testing::Test {
protected:
    void add(const std::string& name, const std::string& language)
    {
        files.addFile("/prog/" + name, makeMo({{"", "Language: x\n"},
                                               {"130\4English", language},
                                               {"13\4Wahr", "of an older version"},
                                               {"14\4False", "Falsch"},
                                               {"x14\4False", "no number"},
                                               {"99999\4False", "no number of ours"}}));
    }
    std::unique_ptr<TextModules> modules(const std::string& language)
    {
        return makeMoTextModules(files, {language, "", "", "de_DE.UTF-8"});
    }
    testing::MemoryFileSystem files;
};

TEST_F(MoTextModules, TheFirstByNameIsTakenWithoutWhatIsOutOfDate)
{
    add("kvtr_fr.mo", "Francais");
    add("kvtr_de.mo", "Deutsch");
    files.addFile("/prog/kvtr_aa.txt", "no module");
    files.addFolder("/prog/kvtr_aa.mo");
    EXPECT_TRUE(modules("")->anyIn("/prog"));
    const auto texts = modules("fr")->load("/prog");
    ASSERT_TRUE(texts);
    EXPECT_THAT(*texts, ElementsAre(Pair(14, u"Falsch"), Pair(130, u"Deutsch")));
}

TEST_F(MoTextModules, MissingDamagedAndUnreadableOnesAreToldApart)
{
    files.addFolder("/prog");
    EXPECT_FALSE(modules("")->anyIn("/prog"));
    EXPECT_FALSE(modules("")->anyIn("/nowhere"));
    EXPECT_EQ(modules("")->load("/prog").error().kind, ErrorKind::notFound);
    files.addFile("/prog/kvtr_de.mo", "\xDE\x12\x04\x95 and no more");
    EXPECT_EQ(modules("")->load("/prog").error().kind, ErrorKind::invalid);
    files.setContents("/prog/kvtr_de.mo", std::string(largestMoFile + 1, '\0'));
    EXPECT_EQ(modules("")->load("/prog").error().kind, ErrorKind::invalid);
    files.setHook([](const std::string& operation, const std::string&) -> std::optional<Error> {
        return operation == "read" ? std::optional(Error{ErrorKind::io, 0, ""}) : std::nullopt;
    });
    add("kvtr_aa.mo", "Afar");
    EXPECT_EQ(modules("")->load("/prog").error().kind, ErrorKind::io);
}

}  // namespace
}  // namespace kelvane
