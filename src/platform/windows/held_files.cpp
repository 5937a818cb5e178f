#include "platform/held_files.h"

#include "platform/windows/adapters.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/file_reader.h"
#include "platform/windows/held_file.h"
#include "platform/windows/name_changes.h"
#include "platform/windows/os_error.h"
#include "platform/windows/symbolic_link.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace windows_os {
namespace {

namespace fs = std::filesystem;

// ":" would lead into a stream of the file.
bool isSingleName(NativeView name)
{
    return !name.empty() && name != L"." && name != L".." && name.find_first_of(LR"(\/:)") == NativeView::npos &&
           name.find(L'\0') == NativeView::npos;
}

Error badName()
{
    return osError(ERROR_INVALID_NAME);
}

// The handle keeps the folder from being renamed or removed, and with it those that it lies in; so its path, in which
// links were followed once, stays good for all that is done by it.
class WindowsHeldFolder final : public HeldFolder {
public:
    WindowsHeldFolder(fs::path asked, std::wstring place, Handle folder, std::shared_ptr<OpenFiles> open)
        : asked_(std::move(asked)), place_(std::move(place)), folder_(std::move(folder)), open_(std::move(open))
    {
        if (!place_.ends_with(L'\\'))
            place_ += L'\\';
    }

    const fs::path& path() const override { return asked_; }

    Result<FileDetails> look(NativeView name) const override
    {
        return isSingleName(name) ? lookUp(in(name), false) : badName();
    }

    Result<std::unique_ptr<HeldFile>> open(NativeView name) override
    {
        if (!isSingleName(name))
            return badName();
        std::wstring path = in(name);
        auto file = openRegularHandle(path, ReadPattern::sequential, Links::asThemselves);
        if (!file)
            return file.error();
        return std::unique_ptr<HeldFile>(std::make_unique<WindowsHeldFile>(std::move(path), std::move(*file), open_));
    }

    Result<std::unique_ptr<NewFile>> create(NativeView name) override
    {
        return isSingleName(name) ? createFile(in(name)) : badName();
    }

    Status hardLink(HeldFile& file, NativeView name) override
    {
        const auto held = dynamic_cast<WindowsHeldFile*>(&file);
        if (held == nullptr || !isSingleName(name))
            return badName();
        // A new name could be neither moved nor removed again as long as that program runs.
        if (held->keepsItsNames())
            return osError(ERROR_SHARING_VIOLATION);
        const auto source = held->currentName();
        if (!source)
            return source.error();
        if (::CreateHardLinkW(in(name).c_str(), source->c_str(), nullptr) == 0)
            return lastError();
        return checked(*held, name);
    }

    Status symbolicLink(const fs::path& target, NativeView name) override
    {
        if (!isSingleName(name))
            return badName();
        const Status made = createSymbolicLink(in(name), target, leadsToFolder(target));
        // There are stand-ins for this system that say so and make none.
        return made && !look(name) ? Status(osError(ERROR_NOT_SUPPORTED)) : made;
    }

    Result<fs::path> readLink(NativeView name) const override
    {
        return isSingleName(name) ? readSymbolicLink(in(name)) : badName();
    }

    Status exchange(NativeView /*a*/, NativeView /*b*/) override { return osError(ERROR_NOT_SUPPORTED); }

    Status replace(NativeView from, NativeView to) override
    {
        if (!isSingleName(from) || !isSingleName(to))
            return badName();
        const Status replaced = replaceOpenFile(in(from), in(to));
        if (replaced || replaced.error().kind != ErrorKind::notSupported)
            return replaced;
        const auto old = look(to);
        const LetGo meanwhile(*open_, old ? old->identity : FileIdentity{}, folder_.get());
        return replaceClosedFile(in(from), in(to));
    }

    Status rename(NativeView from, NativeView to) override
    {
        return isSingleName(from) && isSingleName(to) ? renameFile(in(from), in(to)) : badName();
    }

    Status remove(NativeView name) override
    {
        if (!isSingleName(name))
            return badName();
        const Handle file = openToRemove(in(name));
        if (!file.valid())
            return lastError();
        const auto info = infoOf(file.get());
        if (!info)
            return info.error();
        if (info->kind == FileKind::folder)
            return Error{ErrorKind::wrongType, ERROR_DIRECTORY, "a folder"};
        return removeOpen(file.get());
    }

    // The journal of the file system keeps names in their order, and goes to the device with the next file that is
    // flushed; there is no call for a folder.
    Status flush() override { return {}; }
    // Only administrators may flush a volume; its journal keeps the order here as well.
    Status flushVolume() override { return {}; }

private:
    [[nodiscard]] std::wstring in(NativeView name) const { return place_ + std::wstring(name); }

    [[nodiscard]] bool leadsToFolder(const fs::path& target) const
    {
        const auto found = lookUp(systemPath(plainPath(place_) / target), true);
        return found && found->kind == FileKind::folder;
    }

    // The link was made by the path that the file had a moment ago: it may have become another file's name.
    Status checked(const WindowsHeldFile& file, NativeView name)
    {
        const auto made = look(name);
        if (made && made->identity == file.identity())
            return {};
        const Error error = made ? Error{ErrorKind::changed, 0, "another file took its place"} : made.error();
        const Status removed = remove(name);
        return removed ? Status(error) : removed;
    }

    fs::path asked_;
    std::wstring place_;  // in the system's form, with "\" at its end
    Handle folder_;
    std::shared_ptr<OpenFiles> open_;
};

class WindowsHeldFiles final : public HeldFiles {
public:
    Result<std::unique_ptr<HeldFolder>> openFolder(const fs::path& folder) override
    {
        std::wstring place = systemPath(folder);
        // The right to list is what makes the sharing count; without the sharing of deletion nobody renames it.
        Handle handle(::CreateFileW(place.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (!handle.valid())
            return lastError();
        const auto info = infoOf(handle.get());
        if (!info)
            return info.error();
        if (info->kind != FileKind::folder)
            return Error{ErrorKind::wrongType, ERROR_DIRECTORY, "not a folder"};
        if (auto now = pathOfHandle(handle.get()); now && leadsTo(*now, handle.get()))
            place = std::move(*now);
        return std::unique_ptr<HeldFolder>(
            std::make_unique<WindowsHeldFolder>(folder, std::move(place), std::move(handle), open_));
    }

    bool isTooManyLinks(const Error& error) const override { return error.systemCode == ERROR_TOO_MANY_LINKS; }

private:
    std::shared_ptr<OpenFiles> open_ = std::make_shared<OpenFiles>();
};

}  // namespace
}  // namespace windows_os

std::unique_ptr<HeldFiles> makeWindowsHeldFiles()
{
    return std::make_unique<windows_os::WindowsHeldFiles>();
}

}  // namespace kelvane
