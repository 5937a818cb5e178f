// Removing files on the real file system, with a trash of the test's own and answers that it decides.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "platform/file_operations.h"
#include "support/paths.h"

namespace kelvane::testing {

// Items keep their names in the trash.
class FolderTrash final : public FileOperations {
public:
    explicit FolderTrash(std::filesystem::path trash) : trash_(std::move(trash))
    {
        std::filesystem::create_directories(trash_);
    }

    BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag& cancel) override
    {
        ++batches;
        for (std::size_t at = 0; at < items.size(); ++at) {
            if (cancel.cancelled() || posix(items[at].path.filename()) == abortsAt)
                return {ok, true};
            if (sink.before(at))
                sink.after(at, removed(items[at], at, sink));
        }
        return {ok, false};
    }
    Status canTrash(const std::filesystem::path&) override { return {}; }
    bool isInTrash(const std::filesystem::path& path) override
    {
        const auto relative = path.lexically_relative(trash_);
        return !relative.empty() && *relative.begin() != "..";
    }
    Status restore(const std::filesystem::path&, const std::filesystem::path&) override { return unsupported(); }
    Status forget(const std::filesystem::path&) override { return unsupported(); }

    // By the item's name: what becomes of it instead. It is removed only when the code is no failure.
    std::map<std::string, RemovalOutcome> answers;
    std::string abortsAt;
    bool ok = true;
    int batches = 0;
    std::function<void(const std::string& name)> afterEach;

private:
    static Status unsupported() { return Error{ErrorKind::notSupported, 0, {}}; }

    RemovalOutcome removed(const RemovalItem& item, std::size_t at, RemovalSink& sink)
    {
        const std::string name = posix(item.path.filename());
        RemovalOutcome outcome;
        if (const auto answer = answers.find(name); answer != answers.end())
            outcome = answer->second;
        const auto place = trash_ / item.path.filename();
        if (item.removal == Removal::toTrash && outcome.code == 0) {
            if (const Status placed = sink.placing(at, place); !placed)
                return {-1, placed.error(), std::nullopt};
            outcome.trashed = place;
        }
        if (outcome.code == 0 && item.removal == Removal::toTrash)
            std::filesystem::rename(item.path, place);
        else if (outcome.code == 0)
            std::filesystem::remove(item.path);
        if (afterEach)
            afterEach(name);
        return outcome;
    }

    std::filesystem::path trash_;
};

}  // namespace kelvane::testing
