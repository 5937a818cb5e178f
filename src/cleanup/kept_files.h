// The kept file of an item, held and looked at once for all the items that stand for it.
#pragma once

#include <memory>
#include <variant>

#include "cleanup/cleanup_pass.h"
#include "cleanup/held_folders.h"
#include "cleanup/seen_files.h"

namespace kelvane {

struct HeldKept {
    std::filesystem::path path;      // as the list has it
    std::shared_ptr<HeldFile> file;  // null for a folder
    FileDetails now;
};

// Knows the last one. One thread; everything given outlives it.
class KeptFiles {
public:
    KeptFiles(const PassPorts& ports, const ResultsModel& model, HeldFolders& folders)
        : ports_(ports), model_(model), folders_(folders)
    {
    }

    // Open, as the scan saw it, and outside any trash.
    [[nodiscard]] std::variant<HeldKept, CleanupFailure> hold(ItemId kept);
    void release();

private:
    struct Known {
        ItemId id{};
        std::variant<HeldKept, CleanupFailure> answer;
    };

    [[nodiscard]] std::variant<HeldKept, CleanupFailure> look(const ShellItem& kept);
    [[nodiscard]] Result<std::shared_ptr<HeldFile>> openThroughLinks(ItemPlace place);
    [[nodiscard]] bool isInTrash(const ShellItem& kept, const HeldKept& held);

    const PassPorts& ports_;
    const ResultsModel& model_;
    HeldFolders& folders_;
    std::optional<Known> last_;
    std::unordered_map<NativeString, bool> trashFolders_;  // whether files that lie directly in them are in a trash
};

}  // namespace kelvane
