// Fields of content plug-ins as properties: "Plugin.NAME.FIELD".
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/property_system.h"
#include "text/content_plugins.h"

namespace kelvane {

// A catalogue with the rows of another one, followed by one for each field of the plug-ins but their full texts. The
// key: the plug-in's format identifier, and the field's number + 2, since the property system keeps 0 and 1 for itself.
// Constant and thread-safe; both outlive it.
class PluginProperties final : public PropertySystem {
public:
    PluginProperties(const PropertySystem& system, const ContentPlugins& plugins);

    const PropertyInfo* byName(std::string_view canonicalName) const override;
    std::span<const PropertyInfo> all() const override { return all_; }

    // The place in plugins() of the plug-in that a property belongs to, and its field; nothing for any other property.
    struct Field {
        std::size_t plugin = 0;
        std::uint32_t number = 0;
    };
    [[nodiscard]] const Field* fieldOf(const PropertyInfo& property) const;

private:
    void add(const ListedPlugin& plugin, std::size_t place, const PluginField& field);

    const PropertySystem& system_;
    std::deque<std::string> names_;
    std::deque<std::u16string> displayNames_;
    std::vector<PropertyInfo> all_;
    std::unordered_map<std::string_view, std::size_t> rows_;  // of the plug-ins, in all_
    std::unordered_map<std::uint32_t, Field> fields_;         // by identifier
};

// Asks the plug-ins for their own properties, and `next` for all others. Thread-safe; all outlive it.
[[nodiscard]] std::unique_ptr<PropertyReaders> makePluginReaders(const PluginProperties& properties,
                                                                 ContentPlugins& plugins, PropertyReaders& next);

}  // namespace kelvane
