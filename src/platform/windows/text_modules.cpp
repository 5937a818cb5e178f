#include <algorithm>
#include <windows.h>

#include "base/words.h"
#include "platform/native_text.h"
#include "platform/pe_sections.h"
#include "platform/string_bundle.h"
#include "platform/windows/adapters.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace {

// A module as data: none of its code runs.
class ResourceModule {
public:
    explicit ResourceModule(const std::filesystem::path& path)
        : module_(::LoadLibraryExW(windows_os::systemPath(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE))
    {
    }
    ResourceModule(const ResourceModule&) = delete;
    ResourceModule& operator=(const ResourceModule&) = delete;
    ~ResourceModule()
    {
        if (valid())
            ::FreeLibrary(module_);
    }

    [[nodiscard]] bool valid() const { return module_ != nullptr; }

    // Empty when the module has no such bundle.
    [[nodiscard]] std::span<const std::byte> bundle(std::uint16_t number) const
    {
        const HRSRC place = ::FindResourceW(module_, MAKEINTRESOURCEW(number), RT_STRING);
        const HGLOBAL loaded = place ? ::LoadResource(module_, place) : nullptr;
        const void* bytes = loaded ? ::LockResource(loaded) : nullptr;
        if (!bytes)
            return {};
        return {static_cast<const std::byte*>(bytes), ::SizeofResource(module_, place)};
    }

private:
    HMODULE module_;
};

// `invalid` when the file is no whole module.
Status checkFile(FileSystem& files, const std::filesystem::path& path)
{
    auto file = files.openForReading(path, ReadPattern::scattered, Links::followed);
    if (!file)
        return file.error();
    const auto info = (*file)->info();
    if (!info)
        return info.error();
    std::vector<std::byte> beginning(peHeaderBytes);
    const auto read = (*file)->read(beginning);
    if (!read)
        return read.error();
    beginning.resize(*read);
    return holdsItsSections(beginning, info->size.bytes) ? Status{}
                                                         : Error{ErrorKind::invalid, 0, "damaged translation module"};
}

Result<TextsByNumber> loadFile(FileSystem& files, const std::filesystem::path& path)
{
    if (auto whole = checkFile(files, path); !whole)
        return whole.error();
    const ResourceModule module(path);
    if (!module.valid())
        return windows_os::lastError();
    TextsByNumber texts;
    for (std::uint16_t number = 1; number <= textNumberLimit / textsOfBundle; ++number) {
        const auto bytes = module.bundle(number);
        if (bytes.empty())
            continue;
        if (auto read = readStringBundle(bytes, number, texts); !read)
            return read.error();
    }
    return texts;
}

class WindowsTextModules final : public TextModules {
public:
    explicit WindowsTextModules(FileSystem& files) : files_(files) {}

    bool anyIn(const std::filesystem::path& folder) override { return !modulesIn(folder).empty(); }

    Result<TextsByNumber> load(const std::filesystem::path& folder) override
    {
        const auto names = modulesIn(folder);
        if (names.empty())
            return Error{ErrorKind::notFound, 0, "no translation module"};
        return loadFile(files_, folder / *std::min_element(names.begin(), names.end()));
    }

    // Here a person installs one language beside the program; there is no folder of all.
    Result<TextsByNumber> loadForPerson(const std::filesystem::path& /*folder*/) override
    {
        return Error{ErrorKind::notFound, 0, "no translation module"};
    }

private:
    [[nodiscard]] std::vector<NativeString> modulesIn(const std::filesystem::path& folder)
    {
        std::vector<NativeString> names;
        const auto listed = files_.enumerate(folder, Links::followed, [&](const DirectoryEntry& entry) {
            const std::string name = asciiLower(nameBytes(entry.name));
            if (entry.info.kind == FileKind::regular && name.starts_with("kvtr_") && name.ends_with(".dll"))
                names.emplace_back(entry.name);
            return true;
        });
        return listed ? names : std::vector<NativeString>{};
    }

    FileSystem& files_;
};

}  // namespace

std::unique_ptr<TextModules> makeWindowsTextModules(FileSystem& files)
{
    return std::make_unique<WindowsTextModules>(files);
}

}  // namespace kelvane
