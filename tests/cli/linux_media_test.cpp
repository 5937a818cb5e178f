// Similar music, pictures and tags from the command line, on real files and with the real worker.
#include <gmock/gmock.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "console_run.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::runCli;
using ::testing::UnorderedElementsAre;

class LinuxMedia : public ::testing::Test {
protected:
    void make(const std::string& name, const std::string& options)
    {
        const std::string file = tree_.path(name).string();
        const std::string command = "ffmpeg -v error -y " + options + " '" + file + "' </dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }
    // Notes over a beat, other ones for each tune.
    void song(const std::string& name, int tune, const std::string& options = "", int seconds = 30)
    {
        const std::string speed = std::to_string(tune);
        make(name, "-f lavfi -i \"aevalsrc='0.3*sin(2*PI*t*220*(1+floor(mod(t*" + speed + ",5))/4))*exp(-3*mod(t*" +
                       speed + ",1))+0.2*sin(2*PI*t*1760*(1+floor(mod(t*3,7))/" + speed +
                       "))*exp(-5*mod(t*3,1))':d=" + std::to_string(seconds) + "\" " + options);
    }
    testing::ConsoleRun run(Arguments words) { return runCli(words, {}, platform_); }
    testing::ConsoleRun scan(Arguments more)
    {
        more.insert(more.begin(), {"scan", "--category", "audio", tree_.path().string()});
        return run(more);
    }
    std::string at(const std::string& name) const { return tree_.path(name).string(); }
    static std::vector<std::string> names(const json& group)
    {
        std::vector<std::string> all;
        for (const json& file : group.at("files"))
            all.push_back(std::filesystem::path(file.at("path").get<std::string>()).filename().string());
        return all;
    }

    testing::TempTree tree_;
    testing::QuietPlatform platform_;
};

TEST_F(LinuxMedia, SongsThatSoundAlikeAreGroupedWithTheirScores)
{
    song("a.wav", 2);
    song("b.mp3", 2, "-b:a 64k");
    song("c.flac", 5);
    song("short.wav", 2, "", 5);
    make("silent.wav", "-f lavfi -i anullsrc -t 30");
    tree_.write("broken.mp3", "no music");
    const auto first = scan({"--similar", "88", "--json"});
    EXPECT_EQ(first.code, ExitCode::done) << first.err;
    const json report = json::parse(first.out);
    ASSERT_EQ(report.at("groups").size(), 1u) << first.out << first.err;
    const json& group = report.at("groups").at(0);
    EXPECT_THAT(names(group), UnorderedElementsAre("a.wav", "b.mp3"));
    EXPECT_FALSE(group.at("files").at(0).contains("score"));
    EXPECT_GE(group.at("files").at(1).at("score"), 88);
    EXPECT_NEAR(group.at("files").at(1).at("properties").at("System.Media.Duration").get<double>(), 30e7, 1e7);
    EXPECT_EQ(report.at("stats").at("files"), 3);
    EXPECT_GE(report.at("stats").at("comparisons"), 1);
    EXPECT_THAT(first.err, AllOf(HasSubstr("1 file took no part: too short\n"),
                                 HasSubstr("1 file took no part: silence, or one unchanging tone\n")));

    const int found = platform_.caches.found;
    EXPECT_EQ(json::parse(scan({"--similar", "88", "--json"}).out).at("groups"), report.at("groups"));
    EXPECT_GE(platform_.caches.found, found + 6) << "what came of each file is known";

    const auto verbose = scan({"--similar", "88", "--verbose", "--no-cache"});
    EXPECT_THAT(verbose.out, HasSubstr("\tscore "));
    EXPECT_THAT(verbose.err, AllOf(HasSubstr("short.wav: too short"), HasSubstr("silent.wav: silence")));
    EXPECT_THAT(scan({"--similar", "88"}).out, Not(HasSubstr("score")));
}

TEST_F(LinuxMedia, TwoSongsAreComparedAndOneIsDescribed)
{
    song("a.wav", 2);
    song("b.mp3", 2, "-metadata title=Tune");
    song("c.wav", 5);
    const auto compare = [&](const char* a, const char* b) {
        return json::parse(run({"compare", "--category", "audio", "--similar", "88", "--json", at(a), at(b)}).out);
    };
    const json near = compare("a.wav", "b.mp3");
    EXPECT_EQ(near.at("match"), true);
    EXPECT_GE(near.at("score"), 88);
    EXPECT_EQ(near.at("stages").at(0).at("a").at("duration"), 300'000'000);
    EXPECT_EQ(compare("a.wav", "c.wav").at("match"), false);
    EXPECT_THAT(run({"compare", "--category", "audio", "--similar", "88", at("a.wav"), at("c.wav")}).out,
                HasSubstr("lasts 0:30.0"));

    const json audio = json::parse(run({"describe", "--as", "audio", "--json", at("a.wav")}).out).at("audio");
    EXPECT_EQ(audio.at("frames"), 22);
    EXPECT_EQ(audio.at("centroid").size(), 22u);
    EXPECT_EQ(audio.at("spread").size(), 22u);
    EXPECT_NEAR(audio.at("norm").get<double>(), std::sqrt(22.0), 0.01);
    const json all = json::parse(run({"describe", "--json", at("b.mp3")}).out);
    EXPECT_EQ(all.at("properties").at("System.Title"), "Tune");
    EXPECT_EQ(all.at("audio").at("frames"), 22);
    EXPECT_THAT(run({"describe", at("b.mp3")}).out, AllOf(HasSubstr("System.Media.Duration"), HasSubstr("Tune")));

    tree_.write("empty.wav", "");
    const auto none = run({"describe", "--as", "audio", "--json", at("empty.wav")});
    EXPECT_EQ(none.code, ExitCode::incomplete);
    EXPECT_TRUE(json::parse(none.out).at("audio").is_null());
    EXPECT_NE(json::parse(none.out).at("reason"), "");
}

TEST_F(LinuxMedia, PreviewsAreDescribed)
{
    make("p.png", "-f lavfi -i testsrc=s=640x400 -frames:v 1");
    make("f.mp4", "-f lavfi -i testsrc=s=320x240:d=3");
    const json picture = json::parse(run({"describe", "--as", "image", "--json", at("p.png")}).out).at("image");
    EXPECT_EQ(picture.at("width"), 200);
    EXPECT_NEAR(picture.at("height").get<int>(), 125, 1);
    const json film = json::parse(run({"describe", "--json", at("f.mp4")}).out);
    EXPECT_EQ(film.at("image"), json::parse(R"({"width": 200, "height": 150})"));
    EXPECT_EQ(film.at("properties").at("System.Video.FrameWidth"), 320);
    EXPECT_FALSE(film.contains("audio"));
}

TEST_F(LinuxMedia, TagsAreMatchedExactlyAndNearly)
{
    song("a.mp3", 2, "-metadata title='Summer Rain' -metadata artist='The Band' -metadata album=Weather", 2);
    song("b.flac", 5, "-metadata title='Summer rain' -metadata artist='The Bánd' -metadata album=Weather", 2);
    song("c.mp3", 3, "-metadata title='Winter' -metadata artist='Somebody' -metadata album=Else", 2);
    song("d.mp3", 3, "-metadata title='Winter' -metadata artist='Nobody' -metadata album=Elsewhere", 2);
    song("untagged.wav", 3, "", 2);
    const auto nearly = scan({"--match", "Stock.AudioList", "--similar", "90", "--json"});
    const json report = json::parse(nearly.out);
    ASSERT_EQ(report.at("groups").size(), 1u) << nearly.out;
    EXPECT_THAT(names(report.at("groups").at(0)), UnorderedElementsAre("a.mp3", "b.flac"));
    EXPECT_TRUE(report.at("groups").at(0).at("files").at(0).at("properties").contains("Stock.AudioList"));
    EXPECT_THAT(nearly.err, HasSubstr("Stock.AudioList"));

    const json exact = json::parse(scan({"--match", "System.Title", "--no-content", "--json"}).out);
    ASSERT_EQ(exact.at("groups").size(), 1u);
    EXPECT_THAT(names(exact.at("groups").at(0)), UnorderedElementsAre("c.mp3", "d.mp3"));
}

}  // namespace
}  // namespace kelvane
