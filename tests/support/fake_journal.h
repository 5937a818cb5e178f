// A journal that writes down what it was told, and fails where a test wants it to.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "cleanup/journal.h"
#include "support/paths.h"

namespace kelvane::testing {

class FakeJournal final : public JournalWriter {
public:
    RunNumber number() const override { return RunNumber{1}; }
    Result<EntryNumber> intend(const JournalIntent& intent) override
    {
        intents.push_back(intent);
        const Status written = note("intend " + nameOf(intents.size() - 1));
        if (!written)
            return written.error();
        return EntryNumber{static_cast<std::uint32_t>(intents.size() - 1)};
    }
    Status placing(EntryNumber entry, const std::filesystem::path&) override { return note("placing " + named(entry)); }
    Status finish(EntryNumber entry, EntryState state, LinkKind link, const std::filesystem::path& trashed) override
    {
        std::string line = (state == EntryState::done ? "done " : "notDone ") + named(entry);
        if (link != LinkKind::none)
            line += " " + std::string(kelvane::nameOf(link));
        return note(line + (trashed.empty() ? "" : " trashed"));
    }
    Status intendUndo(EntryNumber entry, const NativeString&) override { return note("intendUndo " + named(entry)); }
    Status finishUndo(EntryNumber entry, EntryState) override { return note("finishUndo " + named(entry)); }
    Status flush() override { return note("flush"); }
    Status end() override { return note("end"); }

    // Every line that begins so fails from now on.
    std::string failsAt = "nothing";
    std::vector<std::string> lines;
    std::vector<JournalIntent> intents;

    // Every line, "; " between them.
    [[nodiscard]] std::string told() const
    {
        std::string all;
        for (const std::string& line : lines)
            all += (all.empty() ? "" : "; ") + line;
        return all;
    }

private:
    [[nodiscard]] std::string nameOf(std::size_t entry) const { return posix(intents.at(entry).item.filename()); }
    [[nodiscard]] std::string named(EntryNumber entry) const { return nameOf(static_cast<std::size_t>(entry)); }

    Status note(const std::string& line)
    {
        if (line.starts_with(failsAt))
            return Error{ErrorKind::io, 28, "no space"};
        lines.push_back(line);
        return {};
    }
};

}  // namespace kelvane::testing
