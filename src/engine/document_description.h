// From a file to the descriptor of its text, or to the reason why there is none.
#pragma once

#include <cstdint>
#include <string>

#include "base/cancel.h"
#include "engine/similar_content.h"
#include "platform/run_cache.h"
#include "platform/shell_namespace.h"
#include "props/sim_doc_descriptor.h"
#include "text/text_extraction.h"

namespace kelvane {

struct DocumentDescription {
    Ref<SimDocDescriptor> descriptor;  // null: there is none
    TextOutcome outcome = TextOutcome::extracted;
    std::string detail;  // of the outcome; may be empty

    // Of a file without a descriptor; one whose text was taken has too little of it.
    [[nodiscard]] NoDescriptorCause cause() const;
};

// Whether the outcome is the same however often a file is tried, as long as the file and the settings stay as they are.
[[nodiscard]] bool isLasting(TextOutcome outcome);

// What descriptors of other makes must not be taken for: changes with the extraction and with the descriptor.
inline constexpr std::uint32_t documentDescriptorVersion = 1;

// Describes documents, each from the cache where it is known there. Thread-safe.
class DocumentDescriber {
public:
    // cache may be null. All outlive it.
    DocumentDescriber(ShellNamespace& shell, TextExtraction& extraction, RunCache* cache);

    // sizeOnDisk: the document's size is that of the file, whatever its format; otherwise that of its text where the
    // format wraps it, so that one text matches in all of its formats.
    [[nodiscard]] DocumentDescription describe(const ShellItem& item, bool sizeOnDisk, const CancelFlag& cancel) const;
    // Whether a look at the name says that nothing will come of it.
    [[nodiscard]] bool hopeless(const ShellItem& item) const { return extraction_.hopeless(item); }

private:
    [[nodiscard]] std::optional<RunCacheKey> keyOf(const ShellItem& item, bool sizeOnDisk) const;
    [[nodiscard]] std::optional<DocumentDescription> known(const RunCacheKey& key) const;
    void keep(const RunCacheKey& key, const DocumentDescription& description) const;
    [[nodiscard]] DocumentDescription extract(const ShellItem& item, bool sizeOnDisk, const CancelFlag& cancel) const;

    ShellNamespace& shell_;
    TextExtraction& extraction_;
    RunCache* cache_;
    std::string settings_;  // what the values in the cache depend on besides the file
};

}  // namespace kelvane
