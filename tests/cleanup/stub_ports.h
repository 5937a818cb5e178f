// Ports of a clean-up whose passes are not what is tested.
#pragma once

#include <functional>

#include "platform/file_operations.h"
#include "platform/held_files.h"
#include "support/paths.h"

namespace kelvane::testing {

class NoHeldFiles final : public HeldFiles {
public:
    Result<std::unique_ptr<HeldFolder>> openFolder(const std::filesystem::path&) override
    {
        return Error{ErrorKind::accessDenied, 13, "not to be opened"};
    }
    bool isTooManyLinks(const Error&) const override { return false; }
};

// A trash for everything but what lies below /usb; what is called "gone" cannot be asked about.
class StubOperations final : public FileOperations {
public:
    BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag&) override
    {
        for (std::size_t at = 0; at < items.size(); ++at) {
            if (!sink.before(at))
                continue;
            const std::filesystem::path trashed = "/trash/" + items[at].path.filename().string();
            if (!sink.placing(at, trashed))
                continue;
            const std::int32_t code = removed(items[at].path);
            sink.after(at, {code, std::nullopt, code < 0 ? std::nullopt : std::optional(trashed)});
        }
        return {};
    }
    Status canTrash(const std::filesystem::path& path) override
    {
        ++asked;
        const std::string name = posix(path);
        if (name.ends_with("gone"))
            return Error{ErrorKind::notFound, 0, {}};
        return name.starts_with("/usb") ? Status(Error{ErrorKind::notSupported, 0, "no trash there"}) : Status();
    }
    bool isInTrash(const std::filesystem::path&) override { return false; }
    Status restore(const std::filesystem::path&, const std::filesystem::path&) override { return {}; }
    Status forget(const std::filesystem::path&) override { return {}; }

    int asked = 0;  // canTrash()
    std::function<std::int32_t(const std::filesystem::path&)> removed = [](const auto&) { return 0; };
};

}  // namespace kelvane::testing
