#include "platform/mo_text_modules.h"

#include <algorithm>
#include <charconv>

#include "base/utf.h"
#include "platform/mo_catalogue.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view beginning = "kvtr_";
constexpr std::string_view ending = ".mo";

Error noModule()
{
    return {ErrorKind::notFound, 0, "no translation module"};
}

Result<std::vector<std::byte>> readWhole(FileSystem& files, const std::filesystem::path& path)
{
    auto file = files.openForReading(path, ReadPattern::sequential, Links::followed);
    if (!file)
        return file.error();
    const auto info = (*file)->info();
    if (!info)
        return info.error();
    if (info->size.bytes > largestMoFile)
        return Error{ErrorKind::invalid, 0, "too large for a catalogue of translations"};
    std::vector<std::byte> bytes(static_cast<std::size_t>(info->size.bytes));
    const auto read = (*file)->read(bytes);
    if (!read)
        return read.error();
    bytes.resize(*read);
    return bytes;
}

void keep(const MoEntry& entry, TextsByNumber& texts)
{
    std::uint16_t number = 0;
    const char* end = entry.context.data() + entry.context.size();
    const auto [stop, error] = std::from_chars(entry.context.data(), end, number);
    if (error != std::errc{} || stop != end)
        return;
    const auto english = englishText(TextId{number});
    if (!english.empty() && entry.original == toUtf8(english))
        texts[number] = toUtf16(entry.translation);
}

class MoTextModules final : public TextModules {
public:
    MoTextModules(FileSystem& files, const LocaleVariables& variables)
        : files_(files), languages_(wantedLanguages(variables))
    {
    }

    bool anyIn(const std::filesystem::path& folder) override { return !modulesIn(folder).empty(); }

    Result<TextsByNumber> load(const std::filesystem::path& folder) override
    {
        const auto names = modulesIn(folder);
        if (names.empty())
            return noModule();
        return loadFile(folder / *std::min_element(names.begin(), names.end()));
    }

    Result<TextsByNumber> loadForPerson(const std::filesystem::path& folder) override
    {
        const auto names = modulesIn(folder);
        for (const auto& language : languages_) {
            const auto name = nativeFromBytes(std::string(beginning) + language + std::string(ending));
            if (std::find(names.begin(), names.end(), name) != names.end())
                return loadFile(folder / name);
        }
        return noModule();
    }

private:
    // Empty also where the folder cannot be read.
    [[nodiscard]] std::vector<NativeString> modulesIn(const std::filesystem::path& folder)
    {
        std::vector<NativeString> names;
        const auto listed = files_.enumerate(folder, Links::followed, [&](const DirectoryEntry& entry) {
            const std::string name(nameBytes(entry.name));
            if (entry.info.kind == FileKind::regular && name.starts_with(beginning) && name.ends_with(ending))
                names.emplace_back(entry.name);
            return true;
        });
        return listed ? names : std::vector<NativeString>{};
    }

    [[nodiscard]] Result<TextsByNumber> loadFile(const std::filesystem::path& path)
    {
        const auto bytes = readWhole(files_, path);
        if (!bytes)
            return bytes.error();
        TextsByNumber texts;
        if (auto read = readMoCatalogue(*bytes, [&](const MoEntry& entry) { keep(entry, texts); }); !read)
            return read.error();
        return texts;
    }

    FileSystem& files_;
    std::vector<std::string> languages_;
};

}  // namespace

std::unique_ptr<TextModules> makeMoTextModules(FileSystem& files, const LocaleVariables& variables)
{
    return std::make_unique<MoTextModules>(files, variables);
}

}  // namespace kelvane
