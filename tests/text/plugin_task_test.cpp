#include "text/plugin_task.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

class ScriptedAccess final : public PluginAccess {
public:
    Result<PluginDescription> describe(const std::filesystem::path& library, const CancelFlag& /*cancel*/) override
    {
        if (library == "/refused")
            return Error{ErrorKind::invalid, 0, "no library"};
        return PluginDescription{"EXT=\"A\"", {{3, "Pages", VarType::int32}, {4, "Text", VarType::empty}}};
    }
    Result<RawValue> value(const PluginQuestion& question, const CancelFlag& /*cancel*/) override
    {
        return question.field == 9 ? RawValue{} : RawValue::text(u"of " + question.file.u16string());
    }
    ExtractedDocument fullText(const PluginQuestion& /*question*/, std::uint32_t characters,
                               const CancelFlag& /*cancel*/) override
    {
        ExtractedDocument document;
        document.outcome = TextOutcome::extracted;
        document.text = std::u16string(characters, u'x');
        return document;
    }
};

std::vector<std::byte> answered(const PluginRequest& request)
{
    ScriptedAccess access;
    return answerPluginRequest(encodePluginRequest(request), access);
}

TEST(PluginTaskTest, CarriesQuestionsAndAnswers)
{
    const auto description = decodePluginDescription(answered({PluginAsk::describe, {"/lib", {}, 0}, 0}));
    ASSERT_TRUE(description);
    EXPECT_EQ(description->detect, "EXT=\"A\"");
    ASSERT_EQ(description->fields.size(), 2u);
    EXPECT_EQ(description->fields[0], (PluginField{3, "Pages", VarType::int32}));
    EXPECT_TRUE(description->fields[1].isFullText());

    const auto value = decodePluginValue(answered({PluginAsk::value, {"/lib", "/file", 2}, 0}));
    ASSERT_TRUE(value);
    EXPECT_EQ(std::get<std::u16string>(value->data), u"of /file");
    EXPECT_TRUE(decodePluginValue(answered({PluginAsk::value, {"/lib", "/file", 9}, 0}))->empty());
    EXPECT_EQ(decodePluginText(answered({PluginAsk::fullText, {"/lib", "/file", 2}, 3})).text, u"xxx");
}

TEST(PluginTaskTest, CarriesTheReasonOfARefusal)
{
    const auto description = decodePluginDescription(answered({PluginAsk::describe, {"/refused", {}, 0}, 0}));
    ASSERT_FALSE(description);
    EXPECT_EQ(description.error().kind, ErrorKind::invalid);
    EXPECT_EQ(description.error().detail, "no library");
}

TEST(PluginTaskTest, TakesNoPartOfAMessageForTheWhole)
{
    ScriptedAccess access;
    const auto request = encodePluginRequest({PluginAsk::value, {"/lib", "/file", 2}, 0});
    for (std::size_t length = 0; length < request.size(); ++length)
        EXPECT_TRUE(answerPluginRequest(std::span(request).first(length), access).empty()) << length;
    const auto description = answered({PluginAsk::describe, {"/lib", {}, 0}, 0});
    for (std::size_t length = 0; length < description.size(); ++length)
        EXPECT_FALSE(decodePluginDescription(std::span(description).first(length))) << length;
    const auto value = answered({PluginAsk::value, {"/lib", "/file", 2}, 0});
    for (std::size_t length = 0; length < value.size(); ++length)
        EXPECT_FALSE(decodePluginValue(std::span(value).first(length))) << length;
}

}  // namespace
}  // namespace kelvane
