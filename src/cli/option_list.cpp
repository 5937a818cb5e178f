// The declarations of the shared options, each beside its help.
#include <CLI/CLI.hpp>

#include "cli/options.h"

namespace kelvane {
namespace {

constexpr const char* chooseFiles = "Which files";
constexpr const char* chooseMatch = "What makes two files duplicates";
constexpr const char* chooseOutput = "Output";
constexpr const char* chooseRun = "Running";

std::string notEmpty(const std::string& value)
{
    return value.empty() ? "a value is needed" : "";
}

class Declarer {
public:
    explicit Declarer(CLI::App& app) : app_(app) {}
    void group(const char* name) { group_ = name; }
    void flag(const char* name, bool& value, const char* help) { app_.add_flag(name, value, help)->group(group_); }
    void word(const char* name, std::string& value, const char* type, const char* help)
    {
        app_.add_option(name, value, help)->check(notEmpty)->type_name(type)->group(group_)->take_last();
    }

private:
    CLI::App& app_;
    std::string group_;
};

void addFileOptions(Declarer& add, RawOptions& raw)
{
    add.group(chooseFiles);
    add.word("--category", raw.category, "WORD",
             "Only files of this sort: audio, video, documents,\n"
             "images, ebooks or all (the default)");
    add.word("--masks", raw.masks, "LIST",
             "Only files with these extensions or names,\n"
             "comma-separated: jpg,aif*,report*.pdf");
    add.word("--min-size", raw.minSize, "SIZE",
             "Only files of at least SIZE bytes (64K, 10M, 1G);\n"
             "the default is 1, and 0 takes empty files in");
    add.flag("--ignore-small", raw.ignoreSmall,
             "Leave out tiny files (up to 50000 bytes unless the\nsettings say otherwise)");
    add.flag("--no-subfolders", raw.noSubfolders, "Only files that lie in the given folders directly");
    add.flag("--no-protect", raw.noProtect, "Also look at system folders and hidden files");
    add.flag("--follow-links", raw.followLinks, "Follow symbolic links");
    add.flag("--archives", raw.archives, "Look into archives (zip, 7z, tar and the like)");
}

void addMatchOptions(Declarer& add, RawOptions& raw)
{
    add.group(chooseMatch);
    add.word("--match", raw.match, "LIST",
             "Properties that must be equal, comma-separated:\n"
             "System.FileName,System.Size ('kelvane-cli describe\n"
             "--list' prints all names)");
    add.word("--similar", raw.similar, "PERCENT", "Values need only be this similar, 1 to 100");
    add.flag("--content", raw.content, "Compare contents; the default unless --match is given");
    add.flag("--no-content", raw.noContent, "Compare the --match properties only");
    add.flag("--same-type", raw.sameType, "Files of different types never match");
}

void addOutputOptions(Declarer& add, RawOptions& raw)
{
    add.group(chooseOutput);
    add.word("--format", raw.format, "WORD",
             "text (the default), json, csv, or null (bare names,\n"
             "each ended by NUL, one more NUL between groups)");
    add.flag("--json", raw.json, "The same as --format json");
    add.word("--progress", raw.progress, "WORD", "auto (on a terminal; the default), always or never");
    add.flag("--verbose", raw.verbose, "List every file that was skipped, with the reason");
}

void addRunOptions(Declarer& add, RawOptions& raw)
{
    add.group(chooseRun);
    add.word("--threads", raw.threads, "N", "Worker threads; default: by the number of processors");
    add.flag("--low-priority", raw.lowPriority, "Give other programs precedence");
    add.word("--seed", raw.seed, "N", "Seed of the random generator, to repeat a run");
    add.word("--settings", raw.settings, "FILE", "Go by the settings of this INI file, not by those in\nforce");
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
