#include "made_up_files.h"

#include <array>
#include <string>

#include "platform/native_text.h"

namespace kelvane::bench {
namespace {

constexpr std::array tops = {"Pictures",  "Documents", "Music",      "Downloads",
                             "Old disks", "Backup",    "From phone", "M\xC3\xBCller & Co"};
constexpr std::array events = {"Holiday", "Birthday", "Invoices", "Garden", "Letters", "Concert", "School", "Work"};
constexpr std::array names = {"IMG_", "DSC0", "Scan ", "Letter to Anna ", "track-", "2019 report v"};
constexpr std::array extensions = {".jpg", ".JPG", ".pdf", ".mp3", ".docx", ".png"};

template <class List>
std::string pick(const List& list, std::uint64_t number)
{
    return list[number % list.size()];
}

Ref<const ShellItem> folder(Ref<const ShellItem> parent, const std::string& name)
{
    FileInfo info;
    info.kind = FileKind::folder;
    return ShellItem::make(std::move(parent), nativeFromBytes(name), info, ShellItem::Place::fileSystem);
}

Error absent()
{
    return {ErrorKind::notSupported, 0, "made-up files have nothing of the kind"};
}

}  // namespace

MadeUpFiles::MadeUpFiles(std::uint64_t seed) : random_(seed), home_(folder(nullptr, "/home/anna"))
{
    for (const char* top : tops) {
        const auto above = folder(home_, top);
        for (int year = 2001; year <= 2020; ++year) {
            const auto within = folder(above, std::to_string(year));
            for (int event = 0; event < 125; ++event)
                folders_.push_back(folder(within, pick(events, random_()) + " " + std::to_string(event)));
        }
    }
}

void MadeUpFiles::make(std::uint32_t count, const Taker& take)
{
    std::uint32_t made = 0;
    for (std::uint32_t group = 1; made < count; ++group) {
        FileInfo info;
        info.kind = FileKind::regular;
        info.size = {1 + (std::uint64_t{1} << random_() % 24) + random_() % 5'000};
        const std::string stem = pick(names, random_()) + std::to_string(random_() % 100'000);
        const std::string extension = pick(extensions, random_());
        for (auto copies = 2 + random_() % 4; copies > 0 && made < count; --copies) {
            info.modified = fileTimeFromUnix(1'000'000'000 + static_cast<std::int64_t>(random_() % 600'000'000), 0);
            info.identity = {1, ++made};
            const std::string name = stem + (random_() % 4 == 0 ? " (1)" : "") + extension;
            take(ShellItem::make(anyFolder(), nativeFromBytes(name), info, ShellItem::Place::fileSystem), group);
        }
    }
}

void MadeUpFiles::makeShortNamed(std::uint32_t count, const Taker& take)
{
    constexpr std::uint32_t filesInFolder = 1'000;
    FileInfo info;
    info.kind = FileKind::regular;
    Ref<const ShellItem> within;
    for (std::uint32_t number = 0; number < count; ++number) {
        if (number % filesInFolder == 0)
            within = folder(home_, std::to_string(number / filesInFolder));
        info.size = {random_() % 5'000'000};
        const NativeString name = nativeFromBytes(std::to_string(number) + ".jpg");
        take(ShellItem::make(within, name, info, ShellItem::Place::fileSystem), 1 + number / 3);
    }
}

Result<FileDetails> MadeUpFileSystem::details(const std::filesystem::path& path, Links)
{
    FileDetails details;
    details.kind = path.has_extension() ? FileKind::regular : FileKind::folder;
    return details;
}

Status MadeUpFileSystem::enumerate(const std::filesystem::path&, Links, const EntrySink&)
{
    return absent();
}
Result<std::unique_ptr<ContentReader>> MadeUpFileSystem::openForReading(const std::filesystem::path& path,
                                                                        ReadPattern pattern, Links links)
{
    return real_.openForReading(path, pattern, links);
}
Result<std::vector<std::string>> MadeUpFileSystem::streamNames(const std::filesystem::path&)
{
    return absent();
}
Result<std::vector<std::byte>> MadeUpFileSystem::readStream(const std::filesystem::path&, const std::string&,
                                                            std::size_t)
{
    return absent();
}
Result<VolumeFacts> MadeUpFileSystem::volumeFacts(const std::filesystem::path&)
{
    return absent();
}
Result<std::u16string> MadeUpFileSystem::ownerName(std::uint32_t)
{
    return absent();
}

}  // namespace kelvane::bench
