#include "app/engine_settings.h"

#include <algorithm>

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::size_t ownCategories = 5;

std::vector<std::string> utf8List(const std::vector<std::u16string>& words)
{
    std::vector<std::string> list;
    for (const std::u16string& word : words)
        list.push_back(toUtf8(word));
    return list;
}

void applyExtraction(const Settings& settings, ExtractionOptions& options)
{
    options.textSample = settings.textSample;
    options.largestStream = settings.largestExtraction;
    options.timeout = std::chrono::milliseconds(settings.extractionTimeoutMs);
    options.worker = settings.backgroundExtraction;
    options.excluded = utf8List(settings.extractionExcluded);
    options.whiteList = utf8List(settings.extractionWhiteList);
}

// One limit of time is for everything that a worker does with a file.
void applyMedia(const Settings& settings, MediaOptions& options)
{
    options.songStartMs = settings.songStartMs;
    options.timeout = std::chrono::milliseconds(settings.extractionTimeoutMs);
}

}  // namespace

EngineOptions engineOptionsFrom(const Settings& settings)
{
    EngineOptions options;
    applyEngineNumbers(settings, options);
    options.flags = settings.flags;
    options.moreFlags = settings.moreOptions;
    options.noticesSeen = settings.noticesOff;
    if (!settings.fileTypes.empty())
        options.categories = settings.fileTypes;
    const std::size_t columns = std::min(settings.extraColumns.size(), options.extraColumns.size());
    for (std::size_t index = 0; index < columns; ++index)
        options.extraColumns[index] = toUtf8(settings.extraColumns[index]);
    return options;
}

void applyEngineNumbers(const Settings& settings, EngineOptions& options)
{
    options.hugeFile = settings.hugeFile;
    options.tinyFile = settings.tinyFile;
    options.dateTolerance = settings.dateTolerance;
    options.secondLook = settings.pictureGate;
    options.hoursPerPercent = settings.hoursPerPercent;
    options.excludedVolumes = settings.excludedVolumes;
    applyExtraction(settings, options.extraction);
    applyMedia(settings, options.media);
    const std::size_t categories = std::min({ownCategories, settings.fileTypes.size(), options.categories.size()});
    std::copy_n(settings.fileTypes.begin(), categories, options.categories.begin());
}

}  // namespace kelvane
