#include "app/translation.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

class ProgramInPrefix final : public Places {
public:
    std::filesystem::path temporaryFolder() const override { return "/tmp"; }
    std::filesystem::path settingsFolder() const override { return "/settings"; }
    std::filesystem::path stateFolder() const override { return "/state"; }
    std::filesystem::path cacheFolder() const override { return "/cache"; }
    std::filesystem::path programFile() const override { return "/prefix/bin/kelvane"; }
};

struct FewModules final : TextModules {
    bool anyIn(const std::filesystem::path& folder) override { return beside && folder == "/prefix/bin"; }
    Result<TextsByNumber> load(const std::filesystem::path& folder) override
    {
        EXPECT_EQ(folder, "/prefix/bin");
        return beside ? Result<TextsByNumber>(*beside) : Error{ErrorKind::notFound, 0, ""};
    }
    Result<TextsByNumber> loadForPerson(const std::filesystem::path& folder) override
    {
        const bool here = folder == (built ? "/prefix/bin/translations" : "/prefix/share/kelvane/translations");
        return packaged && here ? Result<TextsByNumber>(*packaged) : Error{ErrorKind::invalid, 0, ""};
    }
    std::optional<TextsByNumber> beside;
    std::optional<TextsByNumber> packaged;
    bool built = false;
};

TEST(Translation, OneBesideTheProgramGoesBeforeThePackagedOne)
{
    const TextsByNumber german = {{130, u"Deutsch"}};
    const TextsByNumber french = {{130, u"Francais"}};
    const TextsByNumber nameless = {{13, u"Vero"}};
    struct Case {
        std::optional<TextsByNumber> beside;
        std::optional<TextsByNumber> packaged;
        bool wanted;
        std::u16string_view language;
    };
    const Case cases[] = {
        {{}, {}, true, u"English"},          {german, french, true, u"Deutsch"},    {{}, french, true, u"Francais"},
        {german, french, false, u"English"}, {nameless, french, true, u"Francais"}, {nameless, {}, true, u"English"},
    };
    const ProgramInPrefix places;
    for (const Case& one : cases) {
        FewModules modules;
        modules.beside = one.beside;
        modules.packaged = one.packaged;
        EXPECT_EQ(anyTranslation(modules, places), one.beside.has_value() || one.packaged.has_value());
        EXPECT_EQ(activateTranslation(modules, places, one.wanted), one.language != u"English");
        EXPECT_EQ(text(TextId::languageName), one.language);
        modules.built = true;
        EXPECT_EQ(activateTranslation(modules, places, one.wanted), one.language != u"English");
    }
    releaseTranslation();
}

}  // namespace
}  // namespace kelvane
