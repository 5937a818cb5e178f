// A results list over files that exist nowhere.
#pragma once

#include <string>
#include <vector>

#include "cleanup/results_table.h"
#include "platform/native_text.h"
#include "support/paths.h"

namespace kelvane::testing {

struct ResultsList {
    // All in one group.
    explicit ResultsList(const std::vector<std::string>& files) : paths(files)
    {
        for (const std::string& path : paths) {
            const auto root = ShellItem::make(nullptr, native("/"), {}, ShellItem::Place::fileSystem);
            model.add(ShellItem::make(root, native(path.substr(1)), {}, ShellItem::Place::fileSystem), 1, false);
        }
    }

    [[nodiscard]] std::vector<ItemId> ids(const std::vector<std::string>& wanted) const
    {
        std::vector<ItemId> found;
        for (std::uint32_t id = 0; id < paths.size(); ++id)
            for (const std::string& path : wanted)
                if (paths[id] == path)
                    found.push_back(ItemId{id});
        return found;
    }

    // Each cell has the file's name and the number of its column.
    [[nodiscard]] TableView view(std::vector<std::u16string> titles) const
    {
        return {std::move(titles), [](ItemContext& file, std::size_t column) {
                    return displayFromNative(file.item().name()) + u' ' + static_cast<char16_t>(u'0' + column);
                }};
    }

    std::vector<std::string> paths;
    ResultsModel model;
};

}  // namespace kelvane::testing
