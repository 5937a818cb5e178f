// How the lists among the settings are shown as tables and taken from them.
#pragma once

#include <QStringList>
#include <functional>
#include <vector>

#include "app/settings.h"
#include "base/text_table.h"

namespace kelvane {

using ListRows = std::vector<QStringList>;

struct ListSpec {
    std::u16string_view key;
    std::vector<TextId> columns;
    ListRows (*read)(const Settings& settings);
    // Rows that make no sense are left out. Null: entries can be removed only, by drop().
    void (*write)(Settings& settings, const ListRows& rows) = nullptr;
    void (*drop)(Settings& settings, std::size_t row) = nullptr;
    std::size_t most = 0;  // entries; 0: none can be added
    int colorColumn = -1;  // that holds a colour, written 0xBBGGRR
    bool canRemove = true;
};

// Null for a key that is no list.
[[nodiscard]] const ListSpec* findListSpec(std::u16string_view key);

}  // namespace kelvane
