#include "props/sim_doc_cache.h"

#include <utility>

#include "props/held_object.h"

namespace kelvane {

Ref<const SimDocDescriptor> documentDescriptor(ItemContext& file, const PropRef& property,
                                               const DescriptorBuilder& build)
{
    if (build && !wasMade(file, property))
        keepObject(file, property, build(file.item()));
    return held<SimDocDescriptor>(file, property);
}

}  // namespace kelvane
