#include "app/engine_settings.h"

#include <algorithm>

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::size_t ownCategories = 5;

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
    options.songStartMs = settings.songStartMs;
    options.hoursPerPercent = settings.hoursPerPercent;
    options.excludedVolumes = settings.excludedVolumes;
    const std::size_t categories = std::min({ownCategories, settings.fileTypes.size(), options.categories.size()});
    std::copy_n(settings.fileTypes.begin(), categories, options.categories.begin());
}

}  // namespace kelvane
