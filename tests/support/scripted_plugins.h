// Content plug-ins that answer from a script: by the name of the library, and by the number of the field.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/shell_item.h"
#include "support/paths.h"
#include "text/plugin_access.h"

namespace kelvane::testing {

class ScriptedPlugins final : public PluginAccess {
public:
    struct Script {
        std::map<std::string, PluginDescription> plugins;  // by the last part of their path
        std::map<std::uint32_t, RawValue> values;          // by field
        std::map<std::uint32_t, ExtractedDocument> texts;  // by field
        bool broken = false;                               // every question for a value breaks a plug-in
        std::vector<std::string> asked;                    // "a.wdx 3 file.txt"
    };
    explicit ScriptedPlugins(Script& script) : script_(script) {}

    Result<PluginDescription> describe(const std::filesystem::path& library, const CancelFlag& /*cancel*/) override
    {
        const auto found = script_.plugins.find(library.filename().string());
        if (found == script_.plugins.end())
            return Error{ErrorKind::notFound, 0, "not there"};
        return found->second;
    }
    Result<RawValue> value(const PluginQuestion& question, const CancelFlag& /*cancel*/) override
    {
        note(question);
        if (script_.broken)
            return Error{ErrorKind::io, 0, "broke down"};
        return script_.values[question.field];
    }
    ExtractedDocument fullText(const PluginQuestion& question, std::uint32_t /*characters*/,
                               const CancelFlag& /*cancel*/) override
    {
        note(question);
        return script_.texts[question.field];
    }

private:
    void note(const PluginQuestion& question)
    {
        script_.asked.push_back(question.path.filename().string() + ' ' + std::to_string(question.field) + ' ' +
                                question.file.filename().string());
    }

    Script& script_;
};

// A file as the walker sees it.
[[nodiscard]] inline Ref<ShellItem> plainFile(std::string_view name,
                                              ShellItem::Place place = ShellItem::Place::fileSystem)
{
    FileInfo info;
    info.kind = FileKind::regular;
    return ShellItem::make(nullptr, native(name), info, place);
}

}  // namespace kelvane::testing
