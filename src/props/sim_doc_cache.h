// The descriptor of a document among the values that were read of its file.
#pragma once

#include <functional>

#include "props/prop_cache.h"
#include "props/property_catalogue.h"
#include "props/sim_doc_descriptor.h"

namespace kelvane {

// Makes the descriptor of a file; nothing when it has none (no text, or too little).
using DescriptorBuilder = std::function<Ref<SimDocDescriptor>(const ShellItem& item)>;

// The descriptor that the file's node of Stock.SimDocDescriptor holds. Where there is no node yet, builds one and adds
// it, also when nothing came of it: each file is tried once. An empty builder builds nothing and adds nothing. The
// descriptor lives at least as long as the node or the reference. Used by the thread that the context belongs to.
[[nodiscard]] Ref<const SimDocDescriptor> documentDescriptor(ItemContext& file, const PropRef& property,
                                                             const DescriptorBuilder& build);

}  // namespace kelvane
