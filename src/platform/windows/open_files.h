// Which files are held, so that systems which replace no open file can do it all the same.
#pragma once

#include <mutex>
#include <string>
#include <vector>
#include <windows.h>

#include "platform/file_info.h"
#include "platform/windows/handle.h"

namespace kelvane::windows_os {

// The handle of a held file.
class OpenFile {
public:
    explicit OpenFile(Handle file);

    [[nodiscard]] HANDLE get() const { return file_.get(); }
    [[nodiscard]] FileIdentity identity() const { return identity_; }

private:
    friend class LetGo;
    void close() { file_ = Handle(); }
    void openAgain(HANDLE folder);

    Handle file_;
    FileIdentity identity_;
    FILE_ID_DESCRIPTOR id_{};
};

// Thread-safe; outlived by nothing that is registered.
class OpenFiles {
public:
    void add(OpenFile& file);
    void remove(OpenFile& file);

private:
    friend class LetGo;
    std::mutex mutex_;
    std::vector<OpenFile*> files_;
};

// While it lives, the held files with the identity are closed; then they are opened again, by their identity and so
// under whatever name. One that is gone meanwhile gives errors from then on. Nobody may use these files meanwhile.
class LetGo {
public:
    LetGo(OpenFiles& files, FileIdentity identity, HANDLE anyOnTheVolume);
    ~LetGo();
    LetGo(const LetGo&) = delete;
    LetGo& operator=(const LetGo&) = delete;

private:
    std::unique_lock<std::mutex> lock_;
    std::vector<OpenFile*> closed_;
    HANDLE volume_;
};

}  // namespace kelvane::windows_os
