// The log of a clean-up, for people: docs/formats/cleanup-log.md.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "cleanup/cleanup_pass.h"
#include "platform/file_output.h"
#include "platform/places.h"

namespace kelvane {

// Put together while the run goes on; UTF-8, lines end in CR LF. Its own words are the same in every language, since
// people and programs search for them.
class CleanupLog {
public:
    // Both texts consist of whole lines.
    CleanupLog(CleanupAction action, std::string_view criteria, std::string_view summary);

    // Links only: those that follow lead there.
    void group(const ShellItem& original);
    void item(const ItemOutcome& outcome, const ShellItem& item);
    // Whether it was stopped, what the plan did nothing about, and how many items are not done.
    void end(const PassOutcome& outcome, const CleanupPlan& plan, const ResultsModel& model);

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    void line(std::string_view text) { text_.append(text).append("\r\n"); }
    void failure(const ItemOutcome& outcome);
    void leftAlone(const CleanupPlan& plan, const ResultsModel& model);

    CleanupAction action_;
    std::string text_;
};

struct WrittenLog {
    std::filesystem::path path;  // also of one that could not be written
    std::optional<Error> failure;
};

// To `wanted`, in the place of what is there; where that is empty to a new file in the temporary folder, never to one
// that is there already, since that folder belongs to everybody.
[[nodiscard]] WrittenLog writeCleanupLog(std::string_view text, const std::filesystem::path& wanted, FileOutput& output,
                                         const Places& places, const Clock& clock);

}  // namespace kelvane
