#include "platform/ini_store.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/ini_file.h"
#include "platform/ini_values.h"

namespace kelvane {
namespace {

constexpr std::uint32_t absentNumber = 0xDEADBEEB;
constexpr std::size_t limitedBlock = 32'768;
constexpr std::size_t limitedText = 32'760;

SettingsCode codeOf(const Status& status)
{
    if (status)
        return SettingsCode::done;
    switch (status.error().kind) {
    case ErrorKind::accessDenied:
        return SettingsCode::accessDenied;
    case ErrorKind::notFound:
        return SettingsCode::notFound;
    case ErrorKind::invalid:
        return SettingsCode::tooLong;
    default:
        return SettingsCode::invalidData;
    }
}

// Which part of the section's path follows that of the parent; nothing when it does not lie below it.
std::optional<std::u16string_view> below(std::u16string_view path, std::u16string_view parent,
                                         const TextFolding& folding)
{
    if (parent.empty())
        return path;
    if (path.size() <= parent.size() || path[parent.size()] != u'\\' ||
        folding.lower(path.substr(0, parent.size())) != folding.lower(parent))
        return std::nullopt;
    return path.substr(parent.size() + 1);
}

class IniStore final : public SettingsStore {
public:
    IniStore(FileSystem& files, FileOutput& output, const TextFolding& folding, std::filesystem::path path,
             IniOptions options)
        : folding_(folding), file_(files, output, folding, std::move(path)), options_(options)
    {
    }

    std::unique_ptr<SettingsSection> open(std::u16string_view path, SettingsAccess access) override;
    SettingsCode deleteSection(std::u16string_view path) override;
    SettingsCode begin() override;
    SettingsCode commit() override;

    void discard() override
    {
        const std::lock_guard lock(mutex_);
        batch_.reset();
    }

    std::string complaint() const override
    {
        const std::lock_guard lock(mutex_);
        return file_.complaint();
    }

    bool isWritable() override
    {
        const std::lock_guard lock(mutex_);
        return file_.isWritable();
    }

private:
    class Section;

    struct Batch {
        IniDocument document;  // as it will be, for reading
        std::vector<IniFile::Edit> edits;
    };

    // Calls `look` with the document in force and gives what it gives.
    template <class Look>
    auto read(Look look) const
    {
        const std::lock_guard lock(mutex_);
        return look(batch_ ? batch_->document : file_.current());
    }
    [[nodiscard]] Status change(IniFile::Edit edit);
    [[nodiscard]] bool exists(std::u16string_view section) const;

    mutable std::mutex mutex_;
    const TextFolding& folding_;
    mutable IniFile file_;  // reads the file again when somebody asks
    IniOptions options_;
    std::optional<Batch> batch_;
};

class IniStore::Section final : public SettingsSection {
public:
    Section(IniStore& store, std::u16string name, SettingsAccess access)
        : store_(store), name_(std::move(name)), access_(access)
    {
    }

    SettingsCode readNumber(std::u16string_view name, std::uint32_t& value) const override
    {
        const std::optional<std::u16string> text = stored(name);
        const std::uint32_t number = text && !text->empty() ? numberFromIniText(*text) : absentNumber;
        if (number == absentNumber)
            return SettingsCode::invalidData;
        value = number;
        return SettingsCode::done;
    }

    SettingsCode readText(std::u16string_view name, std::u16string& text) const override
    {
        std::optional<std::u16string> found = stored(name);
        if (!found)
            return SettingsCode::notFound;
        text = std::move(*found);
        return SettingsCode::done;
    }

    SettingsCode readBlock(std::u16string_view name, std::vector<std::byte>& block) const override
    {
        const std::optional<std::u16string> text = stored(name);
        if (!text)
            return SettingsCode::notFound;
        std::optional<std::vector<std::byte>> bytes = blockFromIniText(*text);
        if (!bytes)
            return SettingsCode::invalidData;
        block = std::move(*bytes);
        return SettingsCode::done;
    }

    SettingsCode writeNumber(std::u16string_view name, std::uint32_t value) override
    {
        return write(name, iniNumberText(value), SettingsCode::invalidData);
    }

    SettingsCode writeText(std::u16string_view name, std::u16string_view text) override
    {
        if (store_.options_.limited && text.size() > limitedText)
            return SettingsCode::tooLong;
        return write(name, std::u16string(text), SettingsCode::invalidData);
    }

    SettingsCode writeBlock(std::u16string_view name, const std::vector<std::byte>& block) override
    {
        if (store_.options_.limited && block.size() >= limitedBlock)
            return SettingsCode::tooLong;
        return write(name, iniBlockText(block), SettingsCode::notFound);
    }

    SettingsCode deleteValue(std::u16string_view name) override
    {
        if (access_ == SettingsAccess::reading)
            return SettingsCode::accessDenied;
        if (!stored(name))
            return SettingsCode::notFound;
        return codeOf(store_.change([section = name_, key = iniValueName(name)](IniDocument& document) {
            static_cast<void>(document.remove(section, key));
        }));
    }

    std::vector<std::u16string> valueNames() const override
    {
        std::vector<std::u16string> names =
            store_.read([&](const IniDocument& document) { return document.keyNames(name_); });
        std::replace(names.begin(), names.end(), iniValueName(u""), std::u16string());
        return names;
    }

    std::vector<std::u16string> subsectionNames() const override;

private:
    std::optional<std::u16string> stored(std::u16string_view name) const
    {
        return store_.read([&](const IniDocument& document) { return document.text(name_, iniValueName(name)); });
    }

    // The profile functions tell that a write failed, but not why: each kind of value has one code for that.
    SettingsCode write(std::u16string_view name, std::u16string text, SettingsCode failure)
    {
        if (access_ == SettingsAccess::reading)
            return SettingsCode::accessDenied;
        const Status done = store_.change([section = name_, key = iniValueName(name), value = std::move(text)](
                                              IniDocument& document) { document.setText(section, key, value); });
        if (done)
            return SettingsCode::done;
        return codeOf(done) == SettingsCode::tooLong ? SettingsCode::tooLong : failure;
    }

    IniStore& store_;
    std::u16string name_;
    SettingsAccess access_;
};

// A section may stand for itself, or be there only because of what lies below it.
std::vector<std::u16string> IniStore::Section::subsectionNames() const
{
    std::vector<std::u16string> names;
    std::vector<std::u16string> seen;
    for (const std::u16string& path :
         store_.read([](const IniDocument& document) { return document.sectionNames(); })) {
        const std::optional<std::u16string_view> rest = below(path, name_, store_.folding_);
        if (!rest)
            continue;
        const std::u16string_view child = rest->substr(0, rest->find(u'\\'));
        std::u16string folded = store_.folding_.lower(child);
        if (child.empty() || std::find(seen.begin(), seen.end(), folded) != seen.end())
            continue;
        names.emplace_back(child);
        seen.push_back(std::move(folded));
    }
    return names;
}

std::unique_ptr<SettingsSection> IniStore::open(std::u16string_view path, SettingsAccess access)
{
    std::u16string name = iniSectionName(path);
    if (access == SettingsAccess::reading && !exists(name))
        return nullptr;
    return std::make_unique<Section>(*this, std::move(name), access);
}

SettingsCode IniStore::deleteSection(std::u16string_view path)
{
    return codeOf(change([&folding = folding_, name = iniSectionName(path)](IniDocument& document) {
        static_cast<void>(document.removeSection(name));
        for (const std::u16string& each : document.sectionNames()) {
            if (below(each, name, folding))
                static_cast<void>(document.removeSection(each));
        }
    }));
}

SettingsCode IniStore::begin()
{
    const std::lock_guard lock(mutex_);
    if (batch_)
        throw std::logic_error("begin() was called twice");
    batch_ = Batch{file_.current(), {}};
    return SettingsCode::done;
}

SettingsCode IniStore::commit()
{
    const std::lock_guard lock(mutex_);
    const std::optional<Batch> batch = std::exchange(batch_, std::nullopt);
    if (!batch || batch->edits.empty())
        return SettingsCode::done;
    return codeOf(file_.change([&](IniDocument& document) {
        for (const IniFile::Edit& edit : batch->edits)
            edit(document);
    }));
}

Status IniStore::change(IniFile::Edit edit)
{
    const std::lock_guard lock(mutex_);
    if (!batch_)
        return file_.change(edit);
    edit(batch_->document);
    batch_->edits.push_back(std::move(edit));
    return {};
}

bool IniStore::exists(std::u16string_view section) const
{
    return read([&](const IniDocument& document) {
        const std::vector<std::u16string> names = document.sectionNames();
        return document.hasSection(section) || std::any_of(names.begin(), names.end(), [&](const std::u16string& name) {
                   return below(name, section, folding_).has_value();
               });
    });
}

}  // namespace

std::unique_ptr<SettingsStore> makeIniStore(FileSystem& files, FileOutput& output, const TextFolding& folding,
                                            std::filesystem::path path, IniOptions options)
{
    return std::make_unique<IniStore>(files, output, folding, std::move(path), options);
}

}  // namespace kelvane
