// Everything that values are read with, over a file system in memory.
#pragma once

#include <memory>
#include <string>

#include "platform/file_namespace.h"
#include "platform/property_table.h"
#include "props/property_source.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"
#include "support/paths.h"

namespace kelvane::testing {

struct PropertyWorld {
    MemoryFileSystem files;
    SimpleFolding folding;
    FakeReaders readers;
    std::unique_ptr<ShellNamespace> shell = makeFileNamespace(files, nullptr, folding);
    std::unique_ptr<PropertySystem> system = makePropertyTable();
    PropertyCatalogue catalogue{*system};
    PropertySource source{catalogue,
                          *shell,
                          readers,
                          folding,
                          {{u"Photos", "jpg,jpe*"}, {u"Reports", "report*.pdf"}, {u"Anything", "*"}}};

    // The context of a file or folder that exists, as a root of its own.
    [[nodiscard]] ItemContext context(const std::string& path)
    {
        return ItemContext(shell->parse(native(path)).value());
    }
    // The context of an empty file that is made now.
    [[nodiscard]] ItemContext newFile(const std::string& path = "/home/a.jpg")
    {
        files.addFile(path, "");
        return context(path);
    }

    [[nodiscard]] PropRef ref(std::string_view name) const { return catalogue.byName(name); }
    [[nodiscard]] PropValue value(ItemContext& file, std::string_view name) const
    {
        return source.value(file, ref(name));
    }
    [[nodiscard]] std::u16string text(ItemContext& file, std::string_view name) const
    {
        return std::u16string(value(file, name).text);
    }
    [[nodiscard]] std::u16string textOf(const std::string& path, std::string_view name)
    {
        ItemContext file = context(path);
        return text(file, name);
    }
};

}  // namespace kelvane::testing
