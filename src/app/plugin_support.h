// The content plug-ins of a run, wired to a platform.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "props/plugin_properties.h"
#include "text/content_plugins.h"
#include "text/extraction_options.h"

namespace kelvane {

// Runs them in workers, or in this process where the settings want no worker. Without a list nothing is loaded and
// nothing changes. The platform outlives it.
class PluginSupport {
public:
    PluginSupport(Platform& platform, const ExtractionOptions& options);
    PluginSupport(const PluginSupport&) = delete;
    PluginSupport& operator=(const PluginSupport&) = delete;

    // The platform's catalogue with the plug-ins' fields behind it.
    [[nodiscard]] const PropertySystem& properties() const;
    // Reads the plug-ins' fields, and everything else by `next`, which outlives this.
    [[nodiscard]] PropertyReaders& readers(PropertyReaders& next);
    // Null where there are none.
    [[nodiscard]] OtherTexts* texts() { return plugins_ ? &*plugins_ : nullptr; }

    // A line for each plug-in that is not used, told once.
    [[nodiscard]] std::vector<std::string> takeComplaints();

private:
    Platform& platform_;
    std::optional<ContentPlugins> plugins_;
    std::optional<PluginProperties> properties_;
    std::unique_ptr<PropertyReaders> readers_;
};

}  // namespace kelvane
