#include "cleanup/results_export.h"

#include <gmock/gmock.h>

#include "platform/platform.h"
#include "support/fake_places.h"
#include "support/fake_processes.h"
#include "support/fakes.h"
#include "support/faulty_output.h"
#include "support/results_list.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ResultsExport : public ::testing::Test {
protected:
    ResultsExport()
    {
        tree_.folder("temporary");
        clock_.milliseconds = 0xABCDEF;
    }

    ExportOutcome exportList(ResultsModel& model, const TableView& view)
    {
        return exportCsv(model, view, u"Kelvane - Töne\nan", {output_, processes_, places_, clock_});
    }
    ExportOutcome exportList() { return exportList(list_.model, list_.view({u"Name"})); }
    [[nodiscard]] std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(places_.temporary))
            names.push_back(entry.path().filename().string());
        return names;
    }

    testing::TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    testing::FaultyOutput output_{platform_->output()};
    testing::FakeProcesses processes_;
    testing::FakePlaces places_{tree_.path()};
    testing::FakeClock clock_;
    testing::ResultsList list_{{"/a,b", "/c"}};
};

TEST_F(ResultsExport, WritesEveryItemAndOpensTheFile)
{
    list_.model.hide(list_.ids({"/a,b"}), hiding_flag::filter);
    const ExportOutcome outcome = exportList();
    EXPECT_EQ(outcome.message, u"");
    EXPECT_THAT(files(), ElementsAre("kvtmp_abcdef.csv"));
    EXPECT_EQ(tree_.read("temporary/kvtmp_abcdef.csv"),
              "\xEF\xBB\xBFKelvane - Töne an\r\n1601-01-01T03:07:39Z\r\nName\r\n\"a,b 0\"\r\nc 0\r\n");
    EXPECT_THAT(processes_.files, ElementsAre(outcome.file));
    EXPECT_EQ(list_.model.hiddenCount(), 0u);
    EXPECT_EQ(list_.model.inView(Mark::selected).items, 2u);
}

TEST_F(ResultsExport, NeverTakesAFileThatIsThere)
{
    tree_.write("temporary/kvtmp_abcdef.csv", "of another program");
    EXPECT_EQ(exportList().file.filename(), "kvtmp_abcdf0.csv");
    EXPECT_EQ(tree_.read("temporary/kvtmp_abcdef.csv"), "of another program");
    processes_.openFailure = Error{ErrorKind::notFound, 0, "no program for it"};
    const ExportOutcome unopened = exportList();
    EXPECT_EQ(unopened.message, u"no program for it");
    EXPECT_TRUE(std::filesystem::exists(unopened.file));
}

TEST_F(ResultsExport, ATableThatIsStoppedIsNotWritten)
{
    std::vector<std::pair<std::size_t, std::size_t>> asked;
    const ExportOutcome outcome =
        exportCsv(list_.model, list_.view({u"Name"}), u"title", {output_, processes_, places_, clock_},
                  [&](std::size_t done, std::size_t total) {
                      asked.emplace_back(done, total);
                      list_.model.remove(list_.ids({"/c"}));  // a person goes on working
                      return done < 1;
                  });
    EXPECT_TRUE(outcome.stopped);
    EXPECT_THAT(asked, ElementsAre(std::pair(0u, 2u), std::pair(1u, 2u)));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ResultsExport, AFailureLeavesNoFile)
{
    bool failed = true;
    for (int n = 1; failed; ++n) {
        output_.fail(testing::FaultyOutput::Fault::once, n);
        const ExportOutcome outcome = exportList();
        failed = output_.failed();
        EXPECT_EQ(outcome.failure.has_value(), failed) << n;
        EXPECT_EQ(outcome.tried.empty(), !failed) << n;
        EXPECT_EQ(outcome.message, failed ? u"I/O Error writing contents file" : u"") << n;
        EXPECT_EQ(outcome.file.empty(), failed);
        EXPECT_EQ(files().empty(), failed) << n;
    }
    EXPECT_EQ(processes_.files.size(), 1u);
}

}  // namespace
}  // namespace kelvane
