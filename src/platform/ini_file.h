// The settings file on the disk: read when it changed, changed under a lock, set aside when it is damaged.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/file_output.h"
#include "platform/file_system.h"
#include "platform/ini_document.h"

namespace kelvane {

// Used by one thread at a time; other processes may change the file at any time. The ports must outlive it.
class IniFile {
public:
    IniFile(FileSystem& files, FileOutput& output, const TextFolding& folding, std::filesystem::path path);

    // The file as it is now: empty when there is none, and when it is damaged or cannot be read.
    [[nodiscard]] const IniDocument& current();

    // Reads the file again under the lock, lets `edit` change it and puts the result in its place in one step, so that
    // what others wrote meanwhile stays. A damaged file is renamed first; one that cannot be read stays as it is, and
    // that is an error. `invalid`: it would grow too large to be read again.
    using Edit = std::function<void(IniDocument&)>;
    [[nodiscard]] Status change(const Edit& edit);

    // As SettingsStore says.
    [[nodiscard]] std::string complaint();
    [[nodiscard]] bool isWritable();

private:
    enum class State { absent, sound, damaged, unreadable };

    void refresh();
    void load();
    void accept(const std::vector<std::byte>& bytes);
    void takeAs(State state, Error error);
    [[nodiscard]] Result<std::unique_ptr<FileLock>> lock();
    [[nodiscard]] Status replaceWith(const IniDocument& document);
    [[nodiscard]] Status mayWrite(const std::filesystem::path& target);
    [[nodiscard]] Status setAside(const std::filesystem::path& target);
    [[nodiscard]] Result<std::filesystem::path> reserveName(const std::filesystem::path& target);

    FileSystem& files_;
    FileOutput& output_;
    const TextFolding& folding_;
    std::filesystem::path path_;

    State state_ = State::absent;
    Error error_;                   // why the file is damaged or unreadable
    std::optional<FileInfo> seen_;  // of the file that was read last; none: read again
    IniDocument document_;
    std::string keptAs_;  // the complaint about a file that was set aside
};

}  // namespace kelvane
