// One text in several formats.
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;

std::vector<std::string> makeParagraphs()
{
    std::minstd_rand random(7);
    std::vector<std::string> paragraphs;
    for (int i = 0; i < 40; ++i) {
        std::string paragraph = "Paragraph " + std::to_string(i);
        for (auto words = random() % 80 + 5; words > 0; --words)
            paragraph += " " + std::string(random() % 9 + 1, static_cast<char>('a' + random() % 26));
        paragraphs.push_back(paragraph + ".");
    }
    return paragraphs;
}

// Set in lines of a page, a blank line between paragraphs.
std::vector<std::string> makePages(const std::vector<std::string>& paragraphs)
{
    constexpr std::size_t width = 80;
    std::vector<std::string> pages(1);
    for (const std::string& paragraph : paragraphs) {
        std::size_t column = 0;
        std::istringstream words(paragraph);
        for (std::string word; words >> word; column += word.size() + 1) {
            if (column + word.size() > width) {
                pages.back() += '\n';
                column = 0;
            }
            pages.back() += (column == 0 ? "" : " ") + word;
        }
        pages.back() += "\n\n";
        if (std::ranges::count(pages.back(), '\n') > 40)
            pages.emplace_back();
    }
    return pages;
}

TEST(LinuxSameTextTest, PdfDocxAndOdtOfOneTextGiveThatText)
{
    DocumentWorld world = testing::officeWorld();
    world.filters = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    const auto paragraphs = makeParagraphs();
    std::string text, odt;
    for (const std::string& paragraph : paragraphs) {
        text += (text.empty() ? "" : "\n") + paragraph;
        odt += "<text:p>" + paragraph + "</text:p>";
    }
    EXPECT_EQ(toUtf8(world.extract("a.docx", testing::makeDocx(testing::docxParagraphs(text))).text), text);
    EXPECT_EQ(toUtf8(world.extract("a.odt", testing::makeOdf(odt)).text), text);
    // A paragraph whose last line is nearly full runs into the next one: a blank where the others have a line break.
    const std::string pdf = toUtf8(world.extract("a.pdf", testing::makePdf(makePages(paragraphs))).text);
    ASSERT_EQ(pdf.size(), text.size());
    std::size_t different = 0;
    for (std::size_t i = 0; i < pdf.size(); ++i) {
        EXPECT_TRUE(pdf[i] == text[i] || (pdf[i] == ' ' && text[i] == '\n')) << i;
        different += pdf[i] != text[i];
    }
    EXPECT_LT(different, paragraphs.size() / 2);
}

}  // namespace
}  // namespace kelvane
