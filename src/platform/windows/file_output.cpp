#include "platform/file_output.h"

#include <algorithm>
#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/file_access.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/file_lock.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace windows_os {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostAtOnce = 64 * 1024 * 1024;

Status answer(BOOL result)
{
    return result != 0 ? Status() : Status(lastError());
}

class HandleFile final : public OutputFile {
public:
    explicit HandleFile(Handle file) : file_(std::move(file)) {}

    Status write(std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            DWORD written = 0;
            const auto count = static_cast<DWORD>(std::min(bytes.size(), mostAtOnce));
            if (::WriteFile(file_.get(), bytes.data(), count, &written, nullptr) == 0)
                return lastError();
            bytes = bytes.subspan(written);
        }
        return {};
    }

    Status flush() override { return answer(::FlushFileBuffers(file_.get())); }

    Status close() override { return answer(::CloseHandle(file_.release())); }

private:
    Handle file_;
};

Result<std::unique_ptr<OutputFile>> openForWriting(const fs::path& path, DWORD access, DWORD how)
{
    Handle file(::CreateFileW(systemPath(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, how,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid())
        return lastError();
    if (::GetFileType(file.get()) != FILE_TYPE_DISK)
        return Error{ErrorKind::wrongType, 0, "not a regular file"};
    return std::unique_ptr<OutputFile>(std::make_unique<HandleFile>(std::move(file)));
}

// Success also when another process makes the folder at the same time.
Status makeFolder(const fs::path& folder)
{
    const std::wstring name = systemPath(folder);
    if (::CreateDirectoryW(name.c_str(), nullptr) != 0)
        return {};
    const Error error = lastError();
    const DWORD attributes = ::GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return error;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Status() : Status(osError(ERROR_DIRECTORY));
}

// A new file takes its access rights from its folder, as is usual here: what lies in a person's profile is the
// person's own, and what an administrator's process writes stays readable to the person.
class WindowsFileOutput final : public FileOutput {
public:
    Result<std::unique_ptr<OutputFile>> create(const fs::path& path) override
    {
        return openForWriting(path, GENERIC_WRITE, CREATE_NEW);
    }

    Result<std::unique_ptr<OutputFile>> append(const fs::path& path) override
    {
        return openForWriting(path, FILE_APPEND_DATA | SYNCHRONIZE, OPEN_ALWAYS);
    }

    Status replace(const fs::path& from, const fs::path& to) override
    {
        return answer(::MoveFileExW(systemPath(from).c_str(), systemPath(to).c_str(),
                                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
    }

    // The journal of the file system keeps the names, and replace() waits for it.
    Status flushFolder(const fs::path& /*folder*/) override { return {}; }

    Status remove(const fs::path& path) override { return answer(::DeleteFileW(systemPath(path).c_str())); }

    Status createFolders(const fs::path& folder) override
    {
        fs::path made;
        for (const fs::path& part : folder) {
            made /= part;
            if (part.empty() || !made.has_relative_path())
                continue;
            if (const Status done = makeFolder(made); !done)
                return done;
        }
        return {};
    }

    Status copyAccess(const fs::path& from, const fs::path& to) override { return copyAccessRights(from, to); }

    // A link that leads nowhere yet is an error here.
    Result<fs::path> target(const fs::path& path) override
    {
        const auto itself = lookUp(systemPath(path), false);
        if (!itself)
            return itself.error().kind == ErrorKind::notFound ? Result<fs::path>(path) : itself.error();
        if (itself->kind != FileKind::link)
            return path;
        const auto found = finalPath(path);
        return found ? Result<fs::path>(*found) : lastError();
    }

    Result<std::unique_ptr<FileLock>> lock(const fs::path& path, std::uint32_t milliseconds) override
    {
        const auto guarded = target(path);
        if (!guarded)
            return guarded.error();
        return lockBeside(*guarded, milliseconds);
    }
};

}  // namespace
}  // namespace windows_os

std::unique_ptr<FileOutput> makeWindowsFileOutput()
{
    return std::make_unique<windows_os::WindowsFileOutput>();
}

}  // namespace kelvane
