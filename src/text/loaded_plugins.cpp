#include "text/loaded_plugins.h"

#include <mutex>

#include "text/content_plugin.h"

namespace kelvane {
namespace {

class LoadedPlugins final : public PluginAccess {
public:
    LoadedPlugins(SharedLibraries& libraries, const TextDecoding& decoding) : libraries_(libraries), decoding_(decoding)
    {
    }

    ~LoadedPlugins() override
    {
        while (!loaded_.empty())
            loaded_.pop_back();
    }

    Result<PluginDescription> describe(const std::filesystem::path& library, const CancelFlag& /*cancel*/) override
    {
        const std::lock_guard lock(mutex_);
        const auto plugin = loaded(library);
        return plugin ? (*plugin)->describe() : Result<PluginDescription>(plugin.error());
    }

    Result<RawValue> value(const PluginQuestion& question, const CancelFlag& /*cancel*/) override
    {
        const std::lock_guard lock(mutex_);
        const auto plugin = loaded(question.path);
        return plugin ? (*plugin)->value(question.file, question.field) : Result<RawValue>(plugin.error());
    }

    ExtractedDocument fullText(const PluginQuestion& question, std::uint32_t characters,
                               const CancelFlag& cancel) override
    {
        const std::lock_guard lock(mutex_);
        if (const auto plugin = loaded(question.path))
            return (*plugin)->fullText(question.file, question.field, characters, cancel);
        return {};
    }

private:
    struct Loaded {
        std::filesystem::path path;
        std::unique_ptr<ContentPlugin> plugin;
    };

    Result<const ContentPlugin*> loaded(const std::filesystem::path& path)
    {
        for (const Loaded& known : loaded_)
            if (known.path == path)
                return known.plugin.get();
        auto plugin = ContentPlugin::load(libraries_, decoding_, path);
        if (!plugin)
            return plugin.error();
        loaded_.push_back({path, std::move(*plugin)});
        return loaded_.back().plugin.get();
    }

    SharedLibraries& libraries_;
    const TextDecoding& decoding_;
    std::mutex mutex_;
    std::vector<Loaded> loaded_;
};

}  // namespace

std::unique_ptr<PluginAccess> makeLoadedPlugins(SharedLibraries& libraries, const TextDecoding& decoding)
{
    return std::make_unique<LoadedPlugins>(libraries, decoding);
}

}  // namespace kelvane
