// Settings in the registry of Windows, below HKEY_CURRENT_USER.
#include <cstring>

#include "platform/settings_store.h"
#include "platform/windows/adapters.h"
#include "platform/windows/registry_key.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

using windows_os::fromWide;
using windows_os::RegistryKey;
using windows_os::RegistryValue;
using windows_os::toWide;

constexpr REGSAM toRead = KEY_READ;
constexpr REGSAM toWrite = KEY_READ | KEY_WRITE;

SettingsCode codeOf(LSTATUS status)
{
    return static_cast<SettingsCode>(status);
}

std::u16string textIn(const RegistryValue& value)
{
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
    // Other programs may have written it without a terminator, or with several.
    if (const auto end = text.find(L'\0'); end != std::wstring::npos)
        text.resize(end);
    return fromWide(text);
}

std::vector<std::u16string> textsOf(const std::vector<std::wstring>& names)
{
    std::vector<std::u16string> texts;
    texts.reserve(names.size());
    for (const std::wstring& name : names)
        texts.push_back(fromWide(name));
    return texts;
}

class RegistrySection final : public SettingsSection {
public:
    RegistrySection(RegistryKey key, bool writable) : key_(std::move(key)), writable_(writable) {}

    SettingsCode readNumber(std::u16string_view name, std::uint32_t& number) const override
    {
        RegistryValue value;
        if (key_.read(toWide(name), value) != ERROR_SUCCESS || value.type != REG_DWORD ||
            value.bytes.size() != sizeof number)
            return SettingsCode::invalidData;
        std::memcpy(&number, value.bytes.data(), sizeof number);
        return SettingsCode::done;
    }

    SettingsCode readText(std::u16string_view name, std::u16string& text) const override
    {
        RegistryValue value;
        const auto code = readOfType(name, REG_SZ, value);
        if (code == SettingsCode::done)
            text = textIn(value);
        return code;
    }

    SettingsCode readBlock(std::u16string_view name, std::vector<std::byte>& block) const override
    {
        RegistryValue value;
        const auto code = readOfType(name, REG_BINARY, value);
        if (code == SettingsCode::done)
            block = std::move(value.bytes);
        return code;
    }

    SettingsCode writeNumber(std::u16string_view name, std::uint32_t number) override
    {
        return write(name, REG_DWORD, &number, sizeof number);
    }

    SettingsCode writeText(std::u16string_view name, std::u16string_view text) override
    {
        const std::wstring wide = toWide(text);
        return write(name, REG_SZ, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t));
    }

    SettingsCode writeBlock(std::u16string_view name, const std::vector<std::byte>& block) override
    {
        return write(name, REG_BINARY, block.data(), block.size());
    }

    SettingsCode deleteValue(std::u16string_view name) override
    {
        return writable_ ? codeOf(::RegDeleteValueW(key_.get(), toWide(name).c_str())) : SettingsCode::accessDenied;
    }

    std::vector<std::u16string> valueNames() const override { return textsOf(key_.valueNames()); }
    std::vector<std::u16string> subsectionNames() const override { return textsOf(key_.subkeyNames()); }

private:
    [[nodiscard]] SettingsCode readOfType(std::u16string_view name, DWORD type, RegistryValue& value) const
    {
        const auto code = codeOf(key_.read(toWide(name), value));
        return code == SettingsCode::done && value.type != type ? SettingsCode::invalidData : code;
    }

    [[nodiscard]] SettingsCode write(std::u16string_view name, DWORD type, const void* bytes, std::size_t count) const
    {
        return writable_ ? codeOf(key_.write(toWide(name), type, bytes, count)) : SettingsCode::accessDenied;
    }

    RegistryKey key_;
    bool writable_;
};

// The registry keeps what it is given at once and has no larger step that programs should still use, so begin() and
// commit() only mark where one would be.
class RegistryStore final : public SettingsStore {
public:
    explicit RegistryStore(std::wstring above) : above_(std::move(above)) {}

    std::unique_ptr<SettingsSection> open(std::u16string_view path, SettingsAccess access) override
    {
        const bool writing = access == SettingsAccess::writing;
        const std::wstring name = below(path);
        RegistryKey key = writing ? RegistryKey::create(HKEY_CURRENT_USER, name, toWrite)
                                  : RegistryKey::open(HKEY_CURRENT_USER, name, toRead);
        return key.valid() ? std::make_unique<RegistrySection>(std::move(key), writing) : nullptr;
    }

    SettingsCode deleteSection(std::u16string_view path) override
    {
        if (path.empty())
            return SettingsCode::accessDenied;  // that would be everything that this person ever set anywhere
        const auto code = ::RegDeleteTreeW(HKEY_CURRENT_USER, below(path).c_str());
        return code == ERROR_FILE_NOT_FOUND ? SettingsCode::done : codeOf(code);
    }

    SettingsCode begin() override { return SettingsCode::done; }
    SettingsCode commit() override { return SettingsCode::done; }
    void discard() override {}
    std::string complaint() const override { return {}; }
    bool isWritable() override { return RegistryKey::open(HKEY_CURRENT_USER, L"Software", toWrite).valid(); }

private:
    [[nodiscard]] std::wstring below(std::u16string_view path) const { return above_ + toWide(path); }

    std::wstring above_;
};

}  // namespace

std::unique_ptr<SettingsStore> makeRegistryStore(std::wstring above)
{
    return std::make_unique<RegistryStore>(std::move(above));
}

}  // namespace kelvane
