#include "media/media_task.h"

#include "media/sample_media.h"

namespace kelvane {
namespace {

MediaAnswer fullAnswer()
{
    MediaAnswer answer;
    answer.fault = {MediaOutcome::codecMissing, "codec", "why"};
    answer.facts = {{"System.Title", RawValue::text(u"title")},
                    {"System.Media.Duration", RawValue::number(VarType::uint64, 1'234'567)}};
    answer.fingerprint = testing::sampleFinger(SongOpening(5'000));
    answer.preview = testing::samplePreview();
    return answer;
}

TEST(MediaTask, ARequestComesBackWhole)
{
    const MediaRequest sent{"s\xC3\xB6ng.mp3", {true, false, true, MediaKind::film}, -5};
    const auto got = decodeMediaRequest(encodeRequest(sent));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->fileName, sent.fileName);
    EXPECT_EQ(got->wish, sent.wish);
    EXPECT_EQ(got->songStartMs, -5);
}

TEST(MediaTask, AnAnswerComesBackWhole)
{
    const MediaAnswer sent = fullAnswer();
    ASSERT_TRUE(sent.fingerprint);
    const auto got = decodeMediaAnswer(encodeAnswer(sent));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->fault.outcome, sent.fault.outcome);
    EXPECT_EQ(got->fault.codec, "codec");
    EXPECT_EQ(got->fault.detail, "why");
    ASSERT_EQ(got->facts.size(), 2u);
    EXPECT_EQ(got->facts[1].name, "System.Media.Duration");
    EXPECT_EQ(got->facts[1].value.data, sent.facts[1].value.data);
    ASSERT_TRUE(got->fingerprint && got->preview);
    EXPECT_EQ(got->fingerprint->packed(), sent.fingerprint->packed());
    EXPECT_EQ(got->preview->packed(), sent.preview->packed());
    const auto empty = decodeMediaAnswer(encodeAnswer({}));
    ASSERT_TRUE(empty);
    EXPECT_FALSE(empty->fingerprint || empty->preview);
}

// Cut anywhere, or longer than it says, it is no message at all.
TEST(MediaTask, MessagesThatAreNotWholeAreRefused)
{
    MediaAnswer answer = fullAnswer();
    answer.fingerprint = nullptr;
    answer.preview = testing::samplePreview(3, 2);
    std::vector<std::byte> bytes = encodeAnswer(answer);
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(decodeMediaAnswer(std::span(bytes).first(length))) << length;
    bytes.push_back(std::byte{0});
    EXPECT_FALSE(decodeMediaAnswer(bytes));
    std::vector<std::byte> request = encodeRequest(MediaRequest{"a", {}, 1});
    for (std::size_t length = 0; length < request.size(); ++length)
        EXPECT_FALSE(decodeMediaRequest(std::span(request).first(length))) << length;
    request.push_back(std::byte{0});
    EXPECT_FALSE(decodeMediaRequest(request));
}

TEST(MediaTask, ChoicesBeyondTheLastAreRefused)
{
    std::vector<std::byte> answer = encodeAnswer({});
    answer.front() = static_cast<std::byte>(static_cast<unsigned>(MediaOutcome::cancelled) + 1);
    EXPECT_FALSE(decodeMediaAnswer(answer));
    const std::vector<std::byte> request = encodeRequest(MediaRequest{"", {}, 1});
    for (std::size_t i = 8; i < 12; ++i) {  // the wish
        auto changed = request;
        changed[i] = std::byte{9};
        EXPECT_FALSE(decodeMediaRequest(changed)) << i;
    }
}

// What a person is told of many files is not to fill the memory.
TEST(MediaTask, LongWordsAreCut)
{
    MediaAnswer answer;
    answer.fault = {MediaOutcome::damaged, "", std::string(100'000, 'x')};
    const auto got = decodeMediaAnswer(encodeAnswer(answer));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->fault.detail, std::string(1'000, 'x'));
}

}  // namespace
}  // namespace kelvane
