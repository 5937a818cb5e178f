// The declarations of the shared options, each beside its help.
#include <CLI/CLI.hpp>

#include "base/filled_text.h"
#include "cli/arguments.h"
#include "cli/options.h"

namespace kelvane {
namespace {

class Declarer {
public:
    explicit Declarer(CLI::App& app) : app_(app) {}
    void group(TextId name) { group_ = filledText(name); }
    void flag(const char* name, bool& value, TextId help)
    {
        app_.add_flag(name, value, filledText(help))->group(group_);
    }
    void word(const char* name, std::string& value, const char* type, TextId help)
    {
        app_.add_option(name, value, filledText(help))->check(notEmpty)->type_name(type)->group(group_)->take_last();
    }

private:
    CLI::App& app_;
    std::string group_;
};

void addFileOptions(Declarer& add, RawOptions& raw)
{
    add.group(TextId::groupFiles);
    add.word("--category", raw.category, "WORD", TextId::helpCategory);
    add.word("--masks", raw.masks, "LIST", TextId::helpMasks);
    add.word("--min-size", raw.minSize, "SIZE", TextId::helpMinSize);
    add.flag("--ignore-small", raw.ignoreSmall, TextId::helpIgnoreSmall);
    add.flag("--no-subfolders", raw.noSubfolders, TextId::helpNoSubfolders);
    add.flag("--no-protect", raw.noProtect, TextId::helpNoProtect);
    add.flag("--follow-links", raw.followLinks, TextId::helpFollowLinks);
    add.flag("--archives", raw.archives, TextId::helpArchives);
}

void addMatchOptions(Declarer& add, RawOptions& raw)
{
    add.group(TextId::groupMatch);
    add.word("--match", raw.match, "LIST", TextId::helpMatch);
    add.word("--similar", raw.similar, "PERCENT", TextId::helpSimilar);
    add.flag("--content", raw.content, TextId::helpContent);
    add.flag("--no-content", raw.noContent, TextId::helpNoContent);
    add.flag("--same-type", raw.sameType, TextId::helpSameType);
    add.flag("--file-sizes", raw.fileSizes, TextId::helpFileSizes);
    add.flag("--score-only", raw.scoreOnly, TextId::helpScoreOnly);
    add.flag("--exhaustive", raw.exhaustive, TextId::helpExhaustive);
}

void addOutputOptions(Declarer& add, RawOptions& raw)
{
    add.group(TextId::groupOutput);
    add.word("--format", raw.format, "WORD", TextId::helpFormat);
    add.flag("--json", raw.json, TextId::helpJson);
    add.word("--progress", raw.progress, "WORD", TextId::helpProgress);
    add.flag("--verbose", raw.verbose, TextId::helpVerbose);
}

void addRunOptions(Declarer& add, RawOptions& raw)
{
    add.group(TextId::groupRun);
    add.word("--threads", raw.threads, "N", TextId::helpThreads);
    add.flag("--low-priority", raw.lowPriority, TextId::helpLowPriority);
    add.word("--seed", raw.seed, "N", TextId::helpSeed);
    add.flag("--no-cache", raw.noCache, TextId::helpNoCache);
    add.word("--settings", raw.settings, "FILE", TextId::helpSettings);
}

}  // namespace

void addOptions(CLI::App& app, RawOptions& raw)
{
    Declarer add(app);
    addFileOptions(add, raw);
    addMatchOptions(add, raw);
    addOutputOptions(add, raw);
    addRunOptions(add, raw);
}

}  // namespace kelvane
