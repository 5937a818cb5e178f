#include "media/media_service.h"

#include "media/media_task.h"
#include "media/sample_media.h"
#include "platform/file_namespace.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"
#include "support/one_entry_archives.h"
#include "support/paths.h"
#include "support/scripted_workers.h"

namespace kelvane {
namespace {

using testing::ScriptedWorkers;

WorkerAnswer answered(const MediaAnswer& answer)
{
    return {WorkerEnd::answered, encodeAnswer(answer), {}};
}

WorkerAnswer faulty(MediaOutcome outcome, std::string codec = {})
{
    MediaAnswer answer;
    answer.fault = {outcome, std::move(codec), {}};
    return answered(answer);
}

class MediaServiceTest : public ::testing::Test {
protected:
    MediaServiceTest()
    {
        files_.addFile("/d/photo.jpg", "pixels");
        files_.addFile("/d/empty.jpg", "");
        files_.addFile("/d/both.zip", "PK");
        archives_.content = std::string(5'000, 'x');
    }

    // A worker that says what it was given, as facts.
    static WorkerAnswer echo(std::span<const std::byte> request, const WorkerInput& input)
    {
        const auto wanted = decodeMediaRequest(request);
        const std::string given = input.path.empty() ? std::to_string(input.bytes.size()) : "path";
        MediaAnswer answer;
        answer.facts = {{wanted->fileName, RawValue::text(std::u16string(given.begin(), given.end()))}};
        return answered(answer);
    }

    MediaReading& service()
    {
        if (!service_)
            service_ = makeMediaReading(*shell_, workers_, options_);
        return *service_;
    }
    Ref<ShellItem> item(const std::string& path)
    {
        const auto parsed = shell_->parse(testing::native(path));
        EXPECT_TRUE(parsed.ok()) << path;
        return *parsed;
    }
    MediaAnswer read(const std::string& path, const MediaWish& wish = {.facts = true})
    {
        return service().read(*item(path), wish, cancel_);
    }
    MediaOutcome outcome(const MediaWish& wish = {.facts = true}) { return read("/d/photo.jpg", wish).fault.outcome; }

    testing::MemoryFileSystem files_;
    testing::OneEntryArchives archives_;
    testing::SimpleFolding folding_;
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(files_, &archives_, folding_);
    ScriptedWorkers::Script script_ = echo;
    ScriptedWorkers workers_{[this](auto request, const auto& input) { return script_(request, input); }};
    MediaOptions options_;
    CancelFlag cancel_;
    std::unique_ptr<MediaReading> service_;
};

TEST_F(MediaServiceTest, FilesGoByPathAndEntriesOfArchivesAsBytes)
{
    options_.timeout = std::chrono::milliseconds(77);
    const auto fact = [](const MediaAnswer& answer) {
        return answer.facts.at(0).name + " " + toUtf8(std::get<std::u16string>(answer.facts.at(0).value.data));
    };
    EXPECT_EQ(fact(read("/d/photo.jpg")), "photo.jpg path");
    EXPECT_EQ(fact(read("/d/both.zip/inside.html")), "inside.html 5000");
    EXPECT_EQ(workers_.lastLimits.program, WorkerProgram::media);
    EXPECT_EQ(workers_.lastLimits.perRequest, options_.timeout);
    EXPECT_EQ(files_.bytesRead(), 0u);  // of the file itself: the worker reads it
}

TEST_F(MediaServiceTest, EntriesOfArchivesAreUnpackedWithinTheLimitAndUntilCancelled)
{
    archives_.content = std::string(3'000'000, 'x');
    options_.largestEntry = 3'000'000;
    EXPECT_EQ(read("/d/both.zip/inside.html").fault.outcome, MediaOutcome::made);
    archives_.content += 'x';
    EXPECT_EQ(read("/d/both.zip/inside.html").fault.outcome, MediaOutcome::tooLarge);
    archives_.claimed = 10;
    EXPECT_EQ(read("/d/both.zip/inside.html").fault.outcome, MediaOutcome::tooLarge) << "whatever the archive says";
    archives_.content = std::string(2'900'000, 'x');
    archives_.onOpen = [&] { cancel_.cancel(); };
    const std::uint64_t before = archives_.bytesRead();
    EXPECT_EQ(read("/d/both.zip/inside.html").fault.outcome, MediaOutcome::cancelled);
    EXPECT_LT(archives_.bytesRead() - before, 100'000u);
    EXPECT_EQ(workers_.asked, 1);
}

TEST_F(MediaServiceTest, FilesThatHoldNothingReachNoWorker)
{
    EXPECT_EQ(read("/d/empty.jpg").fault.outcome, MediaOutcome::damaged);
    EXPECT_EQ(read("/d").fault.outcome, MediaOutcome::unknownFormat);
    EXPECT_TRUE(service().hopeless(*item("/d/empty.jpg")));
    EXPECT_TRUE(service().hopeless(*item("/d")));
    EXPECT_FALSE(service().hopeless(*item("/d/photo.jpg")));
    const auto photo = item("/d/photo.jpg");
    cancel_.cancel();
    EXPECT_EQ(service().read(*photo, {.facts = true}, cancel_).fault.outcome, MediaOutcome::cancelled);
    EXPECT_EQ(workers_.starts, 0);
}

TEST_F(MediaServiceTest, WhateverEndsAWorkerIsToldOfThatFileAlone)
{
    const std::pair<WorkerEnd, MediaOutcome> cases[] = {{WorkerEnd::notOpened, MediaOutcome::unreadable},
                                                        {WorkerEnd::timedOut, MediaOutcome::timedOut},
                                                        {WorkerEnd::tooMuchMemory, MediaOutcome::tooMuchMemory},
                                                        {WorkerEnd::died, MediaOutcome::crashed},
                                                        {WorkerEnd::cancelled, MediaOutcome::cancelled}};
    for (const auto& [end, expected] : cases) {
        script_ = [end = end](auto, const auto&) { return WorkerAnswer{end, {}, {}}; };
        EXPECT_EQ(outcome(), expected);
        script_ = echo;
        EXPECT_EQ(outcome(), MediaOutcome::made);
    }
}

// Less than was asked for, a fingerprint of another opening, a fault that no worker can know of.
TEST_F(MediaServiceTest, AnswersAreNotTrusted)
{
    MediaAnswer other;
    other.fingerprint = testing::sampleFinger(SongOpening(options_.songStartMs + 5'000));
    ASSERT_TRUE(other.fingerprint);
    MediaAnswer unasked;
    unasked.preview = testing::samplePreview();
    const WorkerAnswer lies[] = {answered({}),
                                 answered(other),
                                 answered(unasked),
                                 faulty(MediaOutcome::cancelled),
                                 faulty(MediaOutcome::workerMissing),
                                 {WorkerEnd::answered, std::vector<std::byte>(5), {}}};
    for (const WorkerAnswer& lie : lies) {
        script_ = [&](auto, const auto&) { return lie; };
        EXPECT_EQ(outcome({.fingerprint = true}), MediaOutcome::crashed);
    }
    EXPECT_EQ(workers_.running, 0);
}

TEST_F(MediaServiceTest, WhatIsMissingIsNamedOnce)
{
    script_ = [](auto, const auto&) { return faulty(MediaOutcome::codecMissing, "some codec"); };
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(outcome({.preview = true}), MediaOutcome::codecMissing);
    EXPECT_EQ(service().missing(), std::vector<std::string>{"some codec"});
}

TEST_F(MediaServiceTest, AMissingWorkerIsNamedOnceAndNotLookedForAgain)
{
    workers_.startError = Error{ErrorKind::notFound, 0, "gone"};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(outcome(), MediaOutcome::workerMissing);
    EXPECT_EQ(service().missing(), std::vector<std::string>{"kelvane-media-worker"});
    EXPECT_EQ(workers_.starts, 1);
}

TEST_F(MediaServiceTest, AWorkerThatDoesNotStartIsNoMissingOne)
{
    workers_.startError = Error{ErrorKind::invalid, 0, "broken"};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(outcome(), MediaOutcome::crashed);
    EXPECT_EQ(workers_.starts, 3);
    EXPECT_TRUE(service().missing().empty());
}

}  // namespace
}  // namespace kelvane
