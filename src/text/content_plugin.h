// One content plug-in, loaded into this process.
#pragma once

#include <memory>
#include <string>

#include "platform/shared_libraries.h"
#include "platform/text_decoding.h"
#include "text/content_plugin_api.h"
#include "text/plugin_access.h"

namespace kelvane {

// Used by one thread at a time. Its answers are not trusted: texts end where their room ends, types are checked, and a
// plug-in that wrote beyond its room is an error (`invalid`). It cannot be kept from breaking down or hanging; that is
// what workers are for. Destroying it tells the plug-in first and unloads it then.
class ContentPlugin {
public:
    // The decoding must outlive it.
    [[nodiscard]] static Result<std::unique_ptr<ContentPlugin>>
    load(SharedLibraries& libraries, const TextDecoding& decoding, const std::filesystem::path& path);
    ~ContentPlugin();
    ContentPlugin(const ContentPlugin&) = delete;
    ContentPlugin& operator=(const ContentPlugin&) = delete;

    [[nodiscard]] Result<PluginDescription> describe() const;
    [[nodiscard]] Result<RawValue> value(const std::filesystem::path& file, std::uint32_t field) const;
    [[nodiscard]] ExtractedDocument fullText(const std::filesystem::path& file, std::uint32_t field,
                                             std::uint32_t characters, const CancelFlag& cancel) const;

private:
    struct Functions;
    class CalledFile;
    ContentPlugin(std::unique_ptr<SharedLibrary> library, std::unique_ptr<Functions> functions,
                  const TextDecoding& decoding);
    [[nodiscard]] std::string utf8(std::string_view narrow) const;
    [[nodiscard]] std::u16string wide(std::string_view narrow) const;

    std::unique_ptr<SharedLibrary> library_;
    std::unique_ptr<Functions> functions_;
    const TextDecoding& decoding_;
};

}  // namespace kelvane
