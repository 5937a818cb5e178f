// A list of groups for tests of marks: files that exist on no disk, told by path, size and date.
#pragma once

#include <string>
#include <vector>

#include "results/marking_rules.h"
#include "support/scan_world.h"

namespace kelvane::testing {

struct ListedFile {
    std::string path;
    std::uint32_t group = 1;
    std::uint64_t size = 1;
    std::int64_t modified = 1;  // 0: unknown
    FileIdentity identity{};
    FileKind kind = FileKind::regular;  // a folder has no size
    std::uint32_t attributes = 0;
    ShellItem::Place place = ShellItem::Place::fileSystem;
};

struct MarkingWorld {
    explicit MarkingWorld(const std::vector<ListedFile>& files = {})
    {
        for (const ListedFile& file : files)
            add(file);
    }

    ItemId add(const ListedFile& file)
    {
        const FileInfo info{file.kind, file.attributes, FileSize{file.size}, {file.modified}, file.identity};
        model.add(ShellItem::make(nullptr, native(file.path), info, file.place), file.group, false);
        return model.order().back();
    }

    // "x" for each row with the mark in force, "-" for one without, a space between groups.
    [[nodiscard]] std::string marks() const
    {
        std::string marks;
        model.forEachRun([&](std::span<const ItemId> group) {
            marks += marks.empty() ? "" : " ";
            for (const ItemId id : group)
                marks += model.isMarked(id) ? 'x' : '-';
            return true;
        });
        return marks;
    }

    ScanWorld scan;
    std::unique_ptr<PathRules> windowsPaths = makeWindowsPathRules(scan.folding);
    MarkingPorts ports{scan.properties, *scan.paths};
    ResultsModel model;
};

}  // namespace kelvane::testing
