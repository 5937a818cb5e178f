#include "platform/linux/held_folder.h"

#include <climits>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

#include "platform/linux/anchored_path.h"
#include "platform/linux/file_facts.h"
#include "platform/linux/held_file.h"
#include "platform/linux/link_calls.h"
#include "platform/linux/new_file.h"
#include "platform/linux/os_error.h"
#include "platform/linux/rename_calls.h"

namespace kelvane::linux_os {
namespace {

// Whether it names something directly in a folder, and nothing else.
bool isOneName(NativeView name)
{
    return !name.empty() && name != "." && name != ".." && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

template <class... Names>
bool areNames(Names... names)
{
    return (isOneName(names) && ...);
}

Status answer(int result)
{
    return result == 0 ? Status() : Status(osError(errno));
}

// In a sticky folder of somebody else nobody can take back a name that was given to somebody else's file.
bool keepsNamesOfOthers(int file, int folder)
{
    struct stat place {
    }, held{};
    const uid_t user = ::geteuid();
    return user != 0 && ::fstat(folder, &place) == 0 && (place.st_mode & S_ISVTX) != 0 && place.st_uid != user &&
           ::fstat(file, &held) == 0 && held.st_uid != user;
}

// A folder whose names one may change but not list can be used, and only flushing asks for more.
struct OpenedFolder {
    FileHandle handle;
    bool canFlush = true;
};

Result<OpenedFolder> openFolderAt(const AnchoredPath& at)
{
    constexpr int flags = O_DIRECTORY | O_CLOEXEC;
    OpenedFolder folder;
    folder.handle = FileHandle(uninterrupted([&] { return ::openat(at.folder(), at.rest(), O_RDONLY | flags); }));
    if (!folder.handle.valid() && errno == EACCES) {
        folder.handle = FileHandle(uninterrupted([&] { return ::openat(at.folder(), at.rest(), O_PATH | flags); }));
        folder.canFlush = false;
    }
    if (!folder.handle.valid())
        return osError(errno);
    return folder;
}

class LinuxHeldFolder final : public HeldFolder {
public:
    LinuxHeldFolder(OpenedFolder folder, std::filesystem::path path, std::shared_ptr<Volumes> volumes)
        : folder_(std::move(folder)), path_(std::move(path)), volumes_(std::move(volumes))
    {
    }

    const std::filesystem::path& path() const override { return path_; }

    Result<FileDetails> look(NativeView name) const override
    {
        if (!isOneName(name))
            return osError(EINVAL);
        struct statx facts {};
        if (!readFacts(get(), std::string(name).c_str(), Links::asThemselves, detailsMask(), facts))
            return osError(errno);
        return FactReader(*volumes_).details(facts, name);
    }

    Result<std::unique_ptr<HeldFile>> open(NativeView name) override
    {
        return isOneName(name) ? openHeldFile(get(), std::string(name), volumes_) : osError(EINVAL);
    }

    Result<std::unique_ptr<NewFile>> create(NativeView name) override
    {
        return isOneName(name) ? createNewFile(get(), std::string(name), volumes_) : osError(EINVAL);
    }

    Status hardLink(HeldFile& file, NativeView name) override
    {
        const auto* held = dynamic_cast<const DescriptorHolder*>(&file);
        if (held == nullptr || !isOneName(name))
            return osError(EINVAL);
        if (keepsNamesOfOthers(held->descriptor(), get()))
            return osError(EPERM);
        return linkOpenFile(held->descriptor(), get(), std::string(name));
    }

    Status symbolicLink(const std::filesystem::path& target, NativeView name) override
    {
        return isOneName(name) ? makeSymbolicLink(target, get(), std::string(name)) : osError(EINVAL);
    }

    Result<std::filesystem::path> readLink(NativeView name) const override
    {
        if (!isOneName(name))
            return osError(EINVAL);
        std::string text(PATH_MAX, '\0');
        const ssize_t length = ::readlinkat(get(), std::string(name).c_str(), text.data(), text.size());
        if (length < 0)
            return errno == EINVAL ? Error{ErrorKind::wrongType, errno, "not a link"} : osError(errno);
        text.resize(static_cast<std::size_t>(length));
        return std::filesystem::path(text);
    }

    Status exchange(NativeView a, NativeView b) override
    {
        return areNames(a, b) ? exchangeNames(get(), std::string(a), std::string(b)) : osError(EINVAL);
    }

    Status replace(NativeView from, NativeView to) override
    {
        if (!areNames(from, to))
            return osError(EINVAL);
        return answer(::renameat(get(), std::string(from).c_str(), get(), std::string(to).c_str()));
    }

    Status rename(NativeView from, NativeView to) override
    {
        if (!areNames(from, to))
            return osError(EINVAL);
        return renameToFree({get(), std::string(from)}, {get(), std::string(to)});
    }

    Status remove(NativeView name) override
    {
        return isOneName(name) ? answer(::unlinkat(get(), std::string(name).c_str(), 0)) : osError(EINVAL);
    }

    Status flush() override
    {
        if (!folder_.canFlush) {
            ::sync();
            return {};
        }
        // File systems that keep no folders of their own cannot flush one.
        if (uninterrupted([&] { return ::fsync(get()); }) == 0 || errno == EINVAL || errno == ENOTSUP)
            return {};
        return osError(errno);
    }

    Status flushVolume() override
    {
        if (folder_.canFlush)
            return answer(uninterrupted([&] { return ::syncfs(get()); }));
        ::sync();
        return {};
    }

private:
    [[nodiscard]] int get() const { return folder_.handle.get(); }

    OpenedFolder folder_;
    std::filesystem::path path_;
    std::shared_ptr<Volumes> volumes_;
};

}  // namespace

Result<std::unique_ptr<HeldFolder>> openHeldFolder(const std::filesystem::path& folder,
                                                   std::shared_ptr<Volumes> volumes)
{
    if (!folder.is_absolute())
        return osError(EINVAL);
    const auto anchored = AnchoredPath::make(folder);
    if (!anchored)
        return anchored.error();
    Result<OpenedFolder> opened = openFolderAt(*anchored);
    if (!opened)
        return opened.error();
    return std::unique_ptr<HeldFolder>(
        std::make_unique<LinuxHeldFolder>(std::move(*opened), folder, std::move(volumes)));
}

}  // namespace kelvane::linux_os
