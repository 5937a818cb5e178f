// The content plug-ins that a person listed: their fields become properties of files, their full texts serve documents
// that nothing else reads.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "platform/property_key.h"
#include "text/detect_string.h"
#include "text/other_texts.h"
#include "text/plugin_access.h"
#include "text/plugin_entry.h"

namespace kelvane {

// One that answered.
struct ListedPlugin {
    std::filesystem::path path;  // of the library
    std::string name;            // the library's without its extension; differs from that of every other one
    DetectString detect;
    std::vector<PluginField> fields;
    FormatId format;  // made from the name, so that a property keeps its key from run to run
};

// Thread-safe. What is missing, no plug-in, or breaks down on the first question is left out and complained of by name;
// one that breaks down again and again is not asked any more.
class ContentPlugins final : public OtherTexts {
public:
    // Asks each for its fields, in the order of the list. `characters`: of a full text.
    ContentPlugins(std::unique_ptr<PluginAccess> access, const std::vector<ContentPluginEntry>& entries,
                   std::uint32_t characters, const CancelFlag& cancel);

    [[nodiscard]] std::span<const ListedPlugin> plugins() const { return plugins_; }

    // Of a plug-in by its place in plugins(). Empty for folders and entries of archives, for files that its detect
    // string leaves out, and when the plug-in has none or broke down.
    [[nodiscard]] RawValue value(std::size_t plugin, std::uint32_t field, const ShellItem& item);

    bool mayRead(const ShellItem& item) const override;
    ExtractedDocument extract(const ShellItem& item, const CancelFlag& cancel) override;

    // For the person, a line each; none is given twice.
    [[nodiscard]] std::vector<std::string> takeComplaints();

private:
    struct Health {
        std::atomic<int> breakdowns = 0;  // in a row
        std::atomic<bool> givenUp = false;
    };

    void add(const ContentPluginEntry& entry, PluginDescription description);
    void complain(std::string line);
    [[nodiscard]] bool admits(std::size_t plugin, const ShellItem& item) const;
    void note(std::size_t plugin, bool brokeDown);

    std::unique_ptr<PluginAccess> access_;
    const std::uint32_t characters_;
    std::vector<ListedPlugin> plugins_;
    std::vector<std::unique_ptr<Health>> health_;
    std::mutex mutex_;
    std::vector<std::string> complaints_;
};

}  // namespace kelvane
