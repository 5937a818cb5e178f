#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/directory_listing.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/file_reader.h"
#include "platform/windows/file_streams.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/owners.h"
#include "platform/windows/system_path.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace windows_os {
namespace {

namespace fs = std::filesystem;

// The kind of drive below the folder that the volume is mounted on.
UINT driveTypeOf(const std::wstring& path)
{
    std::wstring root(path.size() + 2, L'\0');
    if (::GetVolumePathNameW(path.c_str(), root.data(), static_cast<DWORD>(root.size())) == 0)
        return DRIVE_UNKNOWN;
    return ::GetDriveTypeW(root.c_str());
}

class WindowsFileSystem final : public FileSystem {
public:
    Status enumerate(const fs::path& folder, Links links, const EntrySink& sink) override
    {
        return listFolder(folder, links, sink);
    }

    Result<FileDetails> details(const fs::path& path, Links links) override
    {
        const std::wstring name = systemPath(path);
        auto details = lookUp(name, links == Links::followed);
        if (details)
            details->ownerId = owners_.ownerOf(name);
        return details;
    }

    Result<std::unique_ptr<ContentReader>> openForReading(const fs::path& path, ReadPattern pattern,
                                                          Links links) override
    {
        return openRegularFile(path, pattern, links);
    }

    Result<std::vector<std::string>> streamNames(const fs::path& path) override { return listStreams(path); }

    Result<std::vector<std::byte>> readStream(const fs::path& path, const std::string& name, std::size_t limit) override
    {
        return readWholeStream(path, name, limit);
    }

    // Nothing here is made up by the kernel, and single files that are fetched when read say so themselves.
    Result<VolumeFacts> volumeFacts(const fs::path& path) override
    {
        const std::wstring name = systemPath(path);
        const Handle file(openToLook(name, true));
        if (!file.valid())
            return lastError();
        VolumeFacts facts;
        facts.serial = identityOf(file.get()).volume;
        wchar_t type[MAX_PATH + 1] = {};
        if (::GetVolumeInformationByHandleW(file.get(), nullptr, 0, nullptr, nullptr, nullptr, type, MAX_PATH + 1) != 0)
            facts.fileSystem = wtf8FromWide(type);
        const UINT drive = driveTypeOf(name);
        facts.fixed = drive == DRIVE_FIXED;
        facts.network = drive == DRIVE_REMOTE;
        return facts;
    }

    Result<std::u16string> ownerName(std::uint32_t ownerId) override { return owners_.nameOf(ownerId); }

private:
    Owners owners_;
};

}  // namespace
}  // namespace windows_os

std::unique_ptr<FileSystem> makeWindowsFileSystem()
{
    return std::make_unique<windows_os::WindowsFileSystem>();
}

}  // namespace kelvane
