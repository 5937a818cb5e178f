// A small world for tests of the scan: files in memory, a handful of properties, an observer that writes down.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "engine/criteria.h"
#include "engine/scan_observer.h"
#include "platform/file_namespace.h"
#include "platform/path_rules.h"
#include "props/property_source.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"
#include "support/small_catalogue.h"

namespace kelvane::testing {

class RecordingObserver final : public ScanObserver {
public:
    void status(std::u16string_view text) override { statuses.emplace_back(text); }
    void caption(std::u16string_view text) override { captions.emplace_back(text); }
    void progress(const ScanProgress& progress) override { steps.push_back(progress); }
    void skipped(const SkippedItem& item) override { skippedItems.push_back(item); }

    std::vector<std::u16string> statuses, captions;
    std::vector<ScanProgress> steps;
    std::vector<SkippedItem> skippedItems;
};

struct ScanWorld {
    explicit ScanWorld(ArchiveFolders* archives = nullptr) : shell(makeFileNamespace(files, archives, folding)) {}

    MemoryFileSystem files;
    SimpleFolding folding;
    FakeReaders readers;
    FakeClock clock;
    SmallPropertySystem system;
    PropertyCatalogue catalogue{system};
    std::unique_ptr<PathRules> paths = makePosixPathRules();
    std::unique_ptr<ShellNamespace> shell;
    PropertySource properties{catalogue, *shell, readers, folding, {}};
    EngineOptions options;

    // Throws std::bad_variant_access for a definition that makes no criteria, which fails the test.
    [[nodiscard]] ScanCriteria criteria(std::uint32_t flags, const std::string& names = "System.Size",
                                        Category category = Category::custom) const
    {
        CScanNode node;
        node.flags = flags;
        node.setCategory(category);
        node.properties = names;
        return makeCriteria(node, options, catalogue).value();
    }
};

}  // namespace kelvane::testing
