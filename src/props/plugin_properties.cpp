#include "props/plugin_properties.h"

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::uint32_t firstNumber = 2;

bool isNumber(VarType type)
{
    return type == VarType::int32 || type == VarType::int64;
}

class PluginReaders final : public PropertyReaders {
public:
    PluginReaders(const PluginProperties& properties, ContentPlugins& plugins, PropertyReaders& next)
        : properties_(properties), plugins_(plugins), next_(next)
    {
    }

    RawValue read(const PropertyInfo& property, const ShellItem& item) override
    {
        const PluginProperties::Field* field = properties_.fieldOf(property);
        return field != nullptr ? plugins_.value(field->plugin, field->number, item) : next_.read(property, item);
    }

private:
    const PluginProperties& properties_;
    ContentPlugins& plugins_;
    PropertyReaders& next_;
};

}  // namespace

PluginProperties::PluginProperties(const PropertySystem& system, const ContentPlugins& plugins)
    : system_(system), all_(system.all().begin(), system.all().end())
{
    for (std::size_t place = 0; place < plugins.plugins().size(); ++place)
        for (const PluginField& field : plugins.plugins()[place].fields)
            if (!field.isFullText())
                add(plugins.plugins()[place], place, field);
}

void PluginProperties::add(const ListedPlugin& plugin, std::size_t place, const PluginField& field)
{
    PropertyInfo row;
    row.name = names_.emplace_back("Plugin." + plugin.name + '.' + field.name);
    row.displayName = displayNames_.emplace_back(toUtf16(field.name));
    row.key = {plugin.format, field.number + firstNumber};
    row.type = field.type;
    row.flags = isNumber(field.type) ? property_flag::numeric : 0;
    rows_.emplace(row.name, all_.size());
    fields_.emplace(propertyIdentifier(row.key), Field{place, field.number});
    all_.push_back(row);
}

const PropertyInfo* PluginProperties::byName(std::string_view canonicalName) const
{
    const auto row = rows_.find(canonicalName);
    return row != rows_.end() ? &all_[row->second] : system_.byName(canonicalName);
}

const PluginProperties::Field* PluginProperties::fieldOf(const PropertyInfo& property) const
{
    const auto field = fields_.find(propertyIdentifier(property.key));
    return field != fields_.end() && rows_.contains(property.name) ? &field->second : nullptr;
}

std::unique_ptr<PropertyReaders> makePluginReaders(const PluginProperties& properties, ContentPlugins& plugins,
                                                   PropertyReaders& next)
{
    return std::make_unique<PluginReaders>(properties, plugins, next);
}

}  // namespace kelvane
