// Times the comparison of texts and measures what its filter loses: similar_texts_bench FOLDER [FILES].
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "base/utf.h"
#include "props/plain_gestalt.h"
#include "props/sim_doc_signature.h"

namespace kelvane::bench {
namespace {

constexpr std::size_t longestText = 65536;
constexpr std::size_t mostPairs = 300'000, plainPairs = 200;
constexpr std::int32_t usualSimilarity = 85;

struct Document {
    Ref<SimDocDescriptor> descriptor;
    SimDocSignature signature;
};

struct Pair {
    const Document *a, *b;
    std::int32_t score;

    // Of its own, so that every way of comparing draws the same numbers.
    [[nodiscard]] MinimalStandard numbers() const
    {
        return MinimalStandard(a->descriptor->textDigest() * 31ull + b->descriptor->textDigest());
    }
};

// Processor time: other programs may run.
template <class Work>
double microseconds(Work work)
{
    const std::clock_t start = std::clock();
    work();
    return 1e6 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Plain texts in UTF-8 only; nothing for anything else.
Ref<SimDocDescriptor> read(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (bytes.find('\0') != std::string::npos || !isValidUtf8(bytes))
        return {};
    return SimDocDescriptor::make(toUtf16(bytes).substr(0, longestText), bytes.size());
}

// In the order of their sizes. Where there are too many files, those whose names come first by an arbitrary order.
std::vector<Document> documents(const char* folder, std::size_t most)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && !entry.is_symlink())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::uint64_t seed = 1;
    for (std::size_t i = files.size(); i > 1; --i)
        std::swap(files[i - 1], files[(seed = seed * 16807 % 2147483647) % i]);
    std::vector<Document> documents;
    for (std::size_t i = 0; i < files.size() && documents.size() < most; ++i)
        if (auto descriptor = read(files[i]))
            documents.push_back({descriptor, SimDocSignature(*descriptor)});
    std::sort(documents.begin(), documents.end(),
              [](const Document& a, const Document& b) { return a.descriptor->size() < b.descriptor->size(); });
    return documents;
}

// All that the sizes allow, or an even choice of them.
std::vector<Pair> pairsOf(const std::vector<Document>& documents)
{
    std::vector<Pair> pairs;
    for (std::size_t i = 0; i < documents.size(); ++i)
        for (std::size_t j = i + 1; j < documents.size(); ++j) {
            if (sizesTooDifferent(documents[i].descriptor->size(), documents[j].descriptor->size()))
                break;
            pairs.push_back({&documents[i], &documents[j], 0});
        }
    std::printf("%zu documents, %zu pairs of like sizes\n", documents.size(), pairs.size());
    const std::size_t step = pairs.size() / mostPairs + 1;
    for (std::size_t i = 0; i * step < pairs.size(); ++i)
        pairs[i] = pairs[i * step];
    pairs.resize((pairs.size() + step - 1) / step);
    return pairs;
}

void tell(const char* what, double time, std::size_t pairs)
{
    std::printf("%-44s %10.2f us a pair %12.0f pairs a second\n", what, time / static_cast<double>(pairs),
                1e6 * static_cast<double>(pairs) / time);
    std::fflush(stdout);
}

// The first half alone: all that a pair without likeness costs.
void timePlainly(const std::vector<Pair>& pairs)
{
    const std::size_t step = pairs.size() / plainPairs + 1;
    std::uint32_t matched = 0;
    std::size_t count = 0;
    const double time = microseconds([&] {
        for (std::size_t i = 0; i < pairs.size(); i += step, ++count) {
            MinimalStandard numbers = pairs[i].numbers();
            for (const auto& probe :
                 sim_doc_model::drawProbes(*pairs[i].a->descriptor, *pairs[i].b->descriptor, numbers))
                matched += testing::plainMatch(probe.x, probe.y);
        }
    });
    tell(matched > 0 ? "plain counting, one half of the model" : "plain counting found nothing", time, count);
}

bool reaches(const Pair& pair, std::int32_t similarity)
{
    MinimalStandard numbers = pair.numbers();
    return similarDocuments(*pair.a->descriptor, *pair.b->descriptor, similarity, numbers).has_value();
}

bool mayReach(const Pair& pair, std::int32_t similarity)
{
    return SimDocSignature::mayReach(pair.a->signature, pair.b->signature, similarity);
}

// True when stopping early gives what the whole comparison gives.
bool timeComparisons(std::vector<Pair>& pairs)
{
    tell("whole comparison", microseconds([&] {
             for (Pair& pair : pairs) {
                 MinimalStandard numbers = pair.numbers();
                 pair.score = compareDocuments(*pair.a->descriptor, *pair.b->descriptor, numbers);
             }
         }),
         pairs.size());
    std::size_t differing = 0, passed = 0;
    tell("stopped early, similarity 85", microseconds([&] {
             for (const Pair& pair : pairs)
                 differing += reaches(pair, usualSimilarity) != (pair.score >= usualSimilarity) ? 1u : 0u;
         }),
         pairs.size());
    tell("filtered, then stopped early", microseconds([&] {
             for (const Pair& pair : pairs)
                 passed += mayReach(pair, usualSimilarity) && reaches(pair, usualSimilarity) ? 1u : 0u;
         }),
         pairs.size());
    std::printf("%zu pairs of the last line are similar; %zu were decided otherwise than by the whole comparison\n",
                passed, differing);
    return differing == 0;
}

void tellRecall(const std::vector<Pair>& pairs)
{
    std::printf("similarity      pairs   pass the filter    recall\n");
    for (const std::int32_t similarity : {80, 85, 90, 95}) {
        std::size_t similar = 0, passing = 0, found = 0;
        for (const Pair& pair : pairs) {
            const bool passes = mayReach(pair, similarity), is = pair.score >= similarity;
            similar += is ? 1u : 0u;
            passing += passes ? 1u : 0u;
            found += passes && is ? 1u : 0u;
        }
        std::printf("%10d %10zu %15.1f %% %9.4f\n", similarity, similar,
                    100.0 * static_cast<double>(passing) / static_cast<double>(pairs.size()),
                    similar > 0 ? static_cast<double>(found) / static_cast<double>(similar) : 1.0);
    }
}

bool run(const char* folder, std::size_t most)
{
    const std::vector<Document> all = documents(folder, most);
    std::vector<Pair> pairs = pairsOf(all);
    if (pairs.empty())
        return false;
    timePlainly(pairs);
    const bool same = timeComparisons(pairs);
    tellRecall(pairs);
    return same;
}

}  // namespace
}  // namespace kelvane::bench

int main(int count, char** words)
{
    const unsigned long most = count > 2 ? std::strtoul(words[2], nullptr, 10) : 2'000;
    if (count < 2 || most < 2) {
        std::fprintf(stderr, "usage: similar_texts_bench FOLDER [FILES]\n");
        return 2;
    }
    return kelvane::bench::run(words[1], most) ? 0 : 1;
}
