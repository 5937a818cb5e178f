#include "text/extraction_service.h"

#include "platform/file_namespace.h"
#include "platform/missing_ports.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"
#include "support/one_entry_archives.h"
#include "support/paths.h"
#include "support/scripted_workers.h"
#include "text/worker_task.h"

namespace kelvane {
namespace {

using testing::MemoryFileSystem;
using testing::ScriptedWorkers;

std::string asText(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

WorkerAnswer documentOf(std::u16string text)
{
    ExtractedDocument document;
    document.outcome = TextOutcome::extracted;
    document.text = std::move(text);
    return {WorkerEnd::answered, encodeDocument(document), {}};
}

class ExtractionServiceTest : public ::testing::Test {
protected:
    ExtractionServiceTest()
    {
        files_.addFile("/d/plain.txt", "plain text");
        files_.addFile("/d/report.html", page());
        files_.addFile("/d/picture.jpg", std::string("\xFF\xD8\xFF\xE0\0\x10JFIF\0\1", 12));
        files_.addFile("/d/both.zip", "PK");
        archives_.content = page();
    }

    static std::string page() { return "<!DOCTYPE html><html><body>" + std::string(5000, 'x'); }

    // A worker that says what it was given.
    static WorkerAnswer echo(std::span<const std::byte> request, const WorkerInput& input)
    {
        const auto wanted = decodeExtractionRequest(request);
        const bool whole = asText(input.bytes) == page();
        return documentOf(toUtf16(wanted->fileName + (input.path.empty() ? (whole ? " bytes" : " ?") : " path")));
    }

    TextExtraction& service()
    {
        if (!service_)
            service_ = makeTextExtraction({*shell_, workers_, *decoding_, *xml_, *packages_, *filters_}, options_);
        return *service_;
    }
    Ref<ShellItem> item(const std::string& path)
    {
        const auto parsed = shell_->parse(testing::native(path));
        EXPECT_TRUE(parsed.ok()) << path;
        return *parsed;
    }
    ExtractedDocument extract(const std::string& path) { return service().extract(*item(path), cancel_); }
    [[nodiscard]] std::u16string textOf(const std::string& path) { return extract(path).text; }

    MemoryFileSystem files_;
    testing::OneEntryArchives archives_;
    testing::SimpleFolding folding_;
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(files_, &archives_, folding_);
    ScriptedWorkers::Script script_ = echo;
    ScriptedWorkers workers_{[this](auto request, const auto& input) { return script_(request, input); }};
    std::unique_ptr<TextDecoding> decoding_ = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml_ = makeMissingXmlParsing();
    std::unique_ptr<PackagedFiles> packages_ = makeMissingPackagedFiles();
    std::unique_ptr<FilterPrograms> filters_ = makeMissingFilterPrograms();
    ExtractionOptions options_;
    CancelFlag cancel_;
    std::unique_ptr<TextExtraction> service_;
};

TEST_F(ExtractionServiceTest, PlainTextStaysHereAndTheRestGoesToAWorker)
{
    options_.timeout = std::chrono::milliseconds(77);
    EXPECT_EQ(textOf("/d/plain.txt"), u"plain text");
    EXPECT_EQ(workers_.starts, 0);
    EXPECT_EQ(textOf("/d/report.html"), u"report.html path");
    EXPECT_EQ(textOf("/d/both.zip/inside.html"), u"inside.html bytes");
    EXPECT_EQ(workers_.lastLimits.perRequest, options_.timeout);
    EXPECT_EQ(workers_.lastLimits.reach, WorkerReach::givenFile);
    EXPECT_EQ(workers_.starts, 1);
}

TEST_F(ExtractionServiceTest, TheBytesTellWhatTheNameDoesNot)
{
    files_.addFile("/d/mislabelled.txt", page());
    files_.addFile("/d/nameless", page());
    files_.addFile("/d/unknown", std::string("\x01\x02\x00\x03", 4) + std::string(9000, '\xFE'));
    EXPECT_EQ(textOf("/d/mislabelled.txt"), u"mislabelled.txt path");
    EXPECT_EQ(textOf("/d/nameless"), u"nameless path");
    const std::uint64_t before = files_.bytesRead();
    EXPECT_EQ(extract("/d/unknown").outcome, TextOutcome::unknownFormat);
    EXPECT_LE(files_.bytesRead() - before, 4096u);
    EXPECT_EQ(extract("/d/picture.jpg").outcome, TextOutcome::unknownFormat);
}

TEST_F(ExtractionServiceTest, SettingsLeaveFilesOut)
{
    options_.excluded = {"xhtml"};
    options_.largestStream = 100;
    options_.whiteList = {"htm"};
    const std::string longPage = "<!DOCTYPE html><html>" + std::string(500, 'x');
    files_.addFile("/d/page.html", longPage);
    files_.addFile("/d/page.htm", longPage);
    files_.addFile("/d/PAGE.XHTML", longPage);
    files_.addFile("/d/long.txt", std::string(500, 'x'));
    EXPECT_EQ(extract("/d/PAGE.XHTML").outcome, TextOutcome::excluded);
    EXPECT_EQ(extract("/d/page.html").outcome, TextOutcome::tooLarge);
    EXPECT_EQ(textOf("/d/page.htm"), u"page.htm path");
    EXPECT_EQ(extract("/d/long.txt").outcome, TextOutcome::extracted);
}

TEST_F(ExtractionServiceTest, ALookAtTheNameSparesHopelessFiles)
{
    options_.excluded = {"doc"};
    files_.addFile("/d/old.DOC", "x");
    files_.addFile("/d/empty.txt", "");
    for (const auto* path : {"/d/picture.jpg", "/d/old.DOC", "/d/empty.txt", "/d"})
        EXPECT_TRUE(service().hopeless(*item(path))) << path;
    for (const auto* path : {"/d/plain.txt", "/d/report.html"})
        EXPECT_FALSE(service().hopeless(*item(path))) << path;
}

TEST_F(ExtractionServiceTest, WhateverEndsAWorkerIsToldOfThatDocumentAlone)
{
    const std::pair<WorkerEnd, TextOutcome> cases[] = {{WorkerEnd::notOpened, TextOutcome::unreadable},
                                                       {WorkerEnd::timedOut, TextOutcome::timedOut},
                                                       {WorkerEnd::tooMuchMemory, TextOutcome::tooMuchMemory},
                                                       {WorkerEnd::died, TextOutcome::crashed},
                                                       {WorkerEnd::cancelled, TextOutcome::cancelled}};
    for (const auto& [end, outcome] : cases) {
        script_ = [end = end](auto, const auto&) { return WorkerAnswer{end, {}, {}}; };
        EXPECT_EQ(extract("/d/report.html").outcome, outcome);
        script_ = echo;
        EXPECT_EQ(textOf("/d/report.html"), u"report.html path");
    }
}

TEST_F(ExtractionServiceTest, AnswersAreNotTrusted)
{
    options_.textSample = 10;
    script_ = [](auto, const auto&) { return documentOf(std::u16string(11, u'x')); };
    EXPECT_EQ(extract("/d/report.html").outcome, TextOutcome::crashed);
    script_ = [](auto, const auto&) { return WorkerAnswer{WorkerEnd::answered, std::vector<std::byte>(5), {}}; };
    EXPECT_EQ(extract("/d/report.html").outcome, TextOutcome::crashed);
    EXPECT_EQ(workers_.running, 0);
}

TEST_F(ExtractionServiceTest, AMissingWorkerIsNamedOnceAndNotLookedForAgain)
{
    workers_.startError = Error{ErrorKind::notFound, 0, "gone"};
    for (int i = 0; i < 3; ++i) {
        const ExtractedDocument document = extract("/d/report.html");
        EXPECT_EQ(document.outcome, TextOutcome::toolMissing);
        EXPECT_EQ(document.missingTool, "kelvane-worker");
    }
    EXPECT_EQ(service().missingTools(), std::vector<std::string>{"kelvane-worker"});
    EXPECT_EQ(workers_.starts, 1);
    EXPECT_EQ(textOf("/d/plain.txt"), u"plain text");
}

TEST_F(ExtractionServiceTest, ToolsThatAWorkerMissedAreGathered)
{
    script_ = [](auto, const auto&) {
        ExtractedDocument document;
        document.outcome = TextOutcome::toolMissing;
        document.missingTool = "pdftotext";
        return WorkerAnswer{WorkerEnd::answered, encodeDocument(document), {}};
    };
    static_cast<void>(extract("/d/report.html"));
    static_cast<void>(extract("/d/report.html"));
    EXPECT_EQ(service().missingTools(), std::vector<std::string>{"pdftotext"});
}

TEST_F(ExtractionServiceTest, WithoutTheHelperEverythingHappensHere)
{
    options_.worker = false;
    files_.addFile("/d/page.html", "<!DOCTYPE html><html><body><p>Here</p></body></html>");
    EXPECT_EQ(extract("/d/page.html").outcome, TextOutcome::extracted);
    static_cast<void>(extract("/d/report.html"));
    EXPECT_EQ(workers_.starts, 0);
}

TEST_F(ExtractionServiceTest, ACancelledScanOpensNothing)
{
    const auto document = item("/d/report.html");
    cancel_.cancel();
    EXPECT_EQ(service().extract(*document, cancel_).outcome, TextOutcome::cancelled);
    EXPECT_EQ(files_.bytesRead(), 0u);
}

}  // namespace
}  // namespace kelvane
