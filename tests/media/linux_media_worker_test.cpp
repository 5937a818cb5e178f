// The whole way: real files, the real worker, its real walls.
#include <cstdlib>

#include "media/described_media.h"
#include "media/media_service.h"
#include "platform/platform.h"
#include "support/linux_archive_maker.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;

class LinuxMediaWorkerTest : public ::testing::Test {
protected:
    // Of test sources, as the command names them.
    fs::path made(const std::string& name, const std::string& options)
    {
        const fs::path file = tree_.path(name);
        const std::string command = "ffmpeg -v error -y " + options + " '" + file.native() + "' </dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return file;
    }
    fs::path song(const std::string& name, const std::string& options = "")
    {
        // Notes over a beat.
        return made(name, "-f lavfi -i \"aevalsrc='0.3*sin(2*PI*t*220*(1+floor(mod(t*2,5))/4))*exp(-3*mod(t*2,1))"
                          "+0.2*sin(2*PI*t*1760*(1+floor(mod(t*3,7))/8))*exp(-5*mod(t*3,1))"
                          "+0.1*(random(0)-0.5)*exp(-20*mod(t*4,1))':d=30\" " +
                              options);
    }
    fs::path picture(const std::string& name, const std::string& size = "640x400")
    {
        return made(name, "-f lavfi -i testsrc=s=" + size + " -frames:v 1");
    }

    Ref<ShellItem> item(const fs::path& path)
    {
        const auto parsed = platform_->shell().parse(path.native());
        EXPECT_TRUE(parsed.ok()) << path;
        return *parsed;
    }
    MediaReading& reading()
    {
        if (!reading_)
            reading_ = makeMediaReading(platform_->shell(), platform_->workers(), options_);
        return *reading_;
    }
    MediaAnswer read(const fs::path& path, const MediaWish& wish) { return reading().read(*item(path), wish, never_); }

    testing::TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    MediaOptions options_;
    const CancelFlag never_;
    std::unique_ptr<MediaReading> reading_;
};

TEST_F(LinuxMediaWorkerTest, SoundsGiveFingerprintsThatKnowTheirCopies)
{
    const MediaWish wish{.facts = true, .fingerprint = true};
    const MediaAnswer original = read(song("a.wav"), wish);
    ASSERT_EQ(original.fault.outcome, MediaOutcome::made) << original.fault.detail;
    EXPECT_EQ(original.fingerprint->frames(), SongOpening(options_.songStartMs).frames);
    EXPECT_FALSE(original.facts.empty());
    for (const auto* name : {"a.mp3", "a.ogg", "a.flac"}) {
        const MediaAnswer copy = read(song(name, "-metadata title=Song"), wish);
        ASSERT_EQ(copy.fault.outcome, MediaOutcome::made) << name << copy.fault.detail;
        EXPECT_GT(compareFingers(*original.fingerprint, *copy.fingerprint), 90) << name;
        const auto title = std::find_if(copy.facts.begin(), copy.facts.end(),
                                        [](const NamedValue& fact) { return fact.name == "System.Title"; });
        EXPECT_NE(title, copy.facts.end()) << name;
    }
}

TEST_F(LinuxMediaWorkerTest, PicturesAndFilmsGivePreviews)
{
    for (const auto* name : {"p.png", "p.jpg", "p.webp"}) {
        const MediaAnswer answer = read(picture(name), {.preview = true});
        ASSERT_EQ(answer.fault.outcome, MediaOutcome::made) << name << answer.fault.detail;
        EXPECT_EQ(answer.preview->width(), 200u) << name;
        EXPECT_NEAR(answer.preview->height(), 125, 1) << name;
    }
    testing::makeArchive(tree_.path("packed.zip"), {{"p.png", tree_.read("p.png")}});
    EXPECT_EQ(read(tree_.path("packed.zip/p.png"), {.preview = true}).fault.outcome, MediaOutcome::made);
    const fs::path film = made("f.mp4", "-f lavfi -i testsrc=s=320x240:d=10 -pix_fmt yuv420p");
    const MediaAnswer answer = read(film, {.facts = true, .preview = true, .previewOf = MediaKind::film});
    EXPECT_EQ(answer.fault.outcome, MediaOutcome::made) << answer.fault.detail;
    EXPECT_FALSE(answer.facts.empty());
}

TEST_F(LinuxMediaWorkerTest, WhatIsNoMediaCostsNothingButItself)
{
    const fs::path good = picture("good.png");
    std::string cut = tree_.read("good.png");
    cut.resize(cut.size() / 3);
    tree_.write("cut.png", cut);
    tree_.write("text.jpg", std::string(5000, 'x'));
    tree_.write("empty.png", "");
    for (const auto* name : {"cut.png", "text.jpg", "empty.png"}) {
        const MediaAnswer answer = read(tree_.path(name), {.facts = true, .fingerprint = true, .preview = true});
        EXPECT_NE(answer.fault.outcome, MediaOutcome::made) << name;
        EXPECT_TRUE(isLasting(answer.fault.outcome)) << name << static_cast<int>(answer.fault.outcome);
    }
    const Ref<ShellItem> gone = item(tree_.write("gone.png", "x"));
    tree_.remove("gone.png");
    EXPECT_EQ(reading().read(*gone, {.preview = true}, never_).fault.outcome, MediaOutcome::unreadable);
    EXPECT_EQ(read(good, {.preview = true}).fault.outcome, MediaOutcome::made);
    EXPECT_TRUE(reading().missing().empty());
}

}  // namespace
}  // namespace kelvane
