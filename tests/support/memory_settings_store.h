// A settings store in memory, with faults on demand.
#pragma once

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>
#include <variant>

#include "platform/settings_store.h"

namespace kelvane::testing {

// Keeps the promises of the port, but for those about threads and processes.
class MemorySettingsStore final : public SettingsStore {
public:
    using Value = std::variant<std::uint32_t, std::u16string, std::vector<std::byte>>;

    // Every write from now on, commit() too, answers with this; done: no fault.
    SettingsCode fault = SettingsCode::done;
    bool writable = true;
    std::string complaintText;
    int commits = 0;

    std::unique_ptr<SettingsSection> open(std::u16string_view path, SettingsAccess access) override
    {
        if (access == SettingsAccess::writing) {
            if (!writable || fault != SettingsCode::done)
                return nullptr;
            make(path);
        } else if (find(path) == sections().end()) {
            return nullptr;
        }
        return std::make_unique<Section>(*this, std::u16string(path), access);
    }

    SettingsCode deleteSection(std::u16string_view path) override
    {
        if (const SettingsCode code = writeCode(); code != SettingsCode::done)
            return code;
        const std::u16string key = folded(path);
        std::erase_if(sections(), [&](const auto& section) {
            const std::u16string own = folded(section.path);
            return key.empty() || own == key || own.starts_with(key + u'\\');
        });
        if (key.empty())
            sections().push_back({u"", {}});
        return SettingsCode::done;
    }

    SettingsCode begin() override
    {
        if (pending_)
            throw std::logic_error("begin() was called twice");
        if (const SettingsCode code = writeCode(); code != SettingsCode::done)
            return code;
        pending_ = kept_;
        return SettingsCode::done;
    }

    SettingsCode commit() override
    {
        if (fault != SettingsCode::done) {
            discard();
            return fault;
        }
        if (pending_)
            kept_ = *std::exchange(pending_, std::nullopt);
        ++commits;
        return SettingsCode::done;
    }

    void discard() override { pending_.reset(); }
    std::string complaint() const override { return complaintText; }
    bool isWritable() override { return writable; }

private:
    struct Named {
        std::u16string name;
        Value value;
    };
    struct Stored {
        std::u16string path;
        std::vector<Named> values;
    };
    using Sections = std::vector<Stored>;

    // ASCII alone: what tests name their values with.
    static std::u16string folded(std::u16string_view text)
    {
        std::u16string result(text);
        for (char16_t& unit : result)
            unit = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
        return result;
    }

    static auto same(std::u16string_view name)
    {
        return [key = folded(name)](const Named& value) { return folded(value.name) == key; };
    }

    class Section final : public SettingsSection {
    public:
        Section(MemorySettingsStore& store, std::u16string path, SettingsAccess access)
            : store_(store), path_(std::move(path)), access_(access)
        {
        }

        SettingsCode readNumber(std::u16string_view name, std::uint32_t& value) const override
        {
            return read(name, value) == SettingsCode::done ? SettingsCode::done : SettingsCode::invalidData;
        }
        SettingsCode readText(std::u16string_view name, std::u16string& text) const override
        {
            return read(name, text);
        }
        SettingsCode readBlock(std::u16string_view name, std::vector<std::byte>& block) const override
        {
            return read(name, block);
        }
        SettingsCode writeNumber(std::u16string_view name, std::uint32_t value) override { return write(name, value); }
        SettingsCode writeText(std::u16string_view name, std::u16string_view text) override
        {
            return write(name, std::u16string(text));
        }
        SettingsCode writeBlock(std::u16string_view name, const std::vector<std::byte>& block) override
        {
            return write(name, block);
        }

        SettingsCode deleteValue(std::u16string_view name) override
        {
            if (const SettingsCode code = writeCode(); code != SettingsCode::done)
                return code;
            const auto section = store_.find(path_);
            const bool there = section != store_.sections().end() && std::erase_if(section->values, same(name)) > 0;
            return there ? SettingsCode::done : SettingsCode::notFound;
        }

        std::vector<std::u16string> valueNames() const override
        {
            std::vector<std::u16string> names;
            if (const auto section = store_.find(path_); section != store_.sections().end()) {
                for (const Named& value : section->values)
                    names.push_back(value.name);
            }
            return names;
        }

        std::vector<std::u16string> subsectionNames() const override
        {
            const std::u16string head = path_.empty() ? u"" : folded(path_) + u'\\';
            std::vector<std::u16string> names;
            for (const Stored& section : store_.sections()) {
                const std::u16string_view rest =
                    std::u16string_view(section.path).substr(std::min(head.size(), section.path.size()));
                if (folded(section.path).starts_with(head) && !rest.empty() && rest.find(u'\\') == rest.npos)
                    names.emplace_back(rest);
            }
            return names;
        }

    private:
        SettingsCode writeCode() const
        {
            return access_ == SettingsAccess::writing ? store_.writeCode() : SettingsCode::accessDenied;
        }

        template <class Kind>
        SettingsCode read(std::u16string_view name, Kind& into) const
        {
            const auto section = store_.find(path_);
            if (section == store_.sections().end())
                return SettingsCode::notFound;
            const auto found = std::find_if(section->values.begin(), section->values.end(), same(name));
            if (found == section->values.end())
                return SettingsCode::notFound;
            const Kind* value = std::get_if<Kind>(&found->value);
            if (value == nullptr)
                return SettingsCode::invalidData;
            into = *value;
            return SettingsCode::done;
        }

        SettingsCode write(std::u16string_view name, Value value)
        {
            if (const SettingsCode code = writeCode(); code != SettingsCode::done)
                return code;
            store_.make(path_);
            std::vector<Named>& values = store_.find(path_)->values;
            const auto found = std::find_if(values.begin(), values.end(), same(name));
            if (found != values.end())
                found->value = std::move(value);
            else
                values.push_back({std::u16string(name), std::move(value)});
            return SettingsCode::done;
        }

        MemorySettingsStore& store_;
        std::u16string path_;
        SettingsAccess access_;
    };

    Sections& sections() { return pending_ ? *pending_ : kept_; }

    Sections::iterator find(std::u16string_view path)
    {
        return std::find_if(sections().begin(), sections().end(),
                            [key = folded(path)](const Stored& section) { return folded(section.path) == key; });
    }

    // With the sections above it.
    void make(std::u16string_view path)
    {
        for (std::size_t end = 0; end < path.size(); ++end) {
            end = std::min(path.find(u'\\', end), path.size());
            const std::u16string_view part = path.substr(0, end);
            if (find(part) == sections().end())
                sections().push_back({std::u16string(part), {}});
        }
    }

    SettingsCode writeCode() const { return writable ? fault : SettingsCode::accessDenied; }

    Sections kept_{{u"", {}}};  // the root is always there
    std::optional<Sections> pending_;
};

}  // namespace kelvane::testing
