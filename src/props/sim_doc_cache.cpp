#include "props/sim_doc_cache.h"

#include "props/value_convert.h"

namespace kelvane {
namespace {

// What the node of this one property holds as an object is a descriptor: nobody else writes it.
Ref<const SimDocDescriptor> heldBy(const PROPCACHE& node)
{
    const auto* object = std::get_if<Ref<RawObject>>(&node.raw.data);
    return object != nullptr ? Ref<const SimDocDescriptor>(dynamic_cast<const SimDocDescriptor*>(object->get()))
                             : Ref<const SimDocDescriptor>();
}

}  // namespace

Ref<const SimDocDescriptor> documentDescriptor(ItemContext& file, const PropRef& property,
                                               const DescriptorBuilder& build)
{
    const PROPCACHE* node = file.find(property.identifier, property.kind());
    if (node != nullptr && !node->pending())
        return heldBy(*node);
    if (!build)
        return {};
    const Ref<SimDocDescriptor> built = build(file.item());
    keepDocumentDescriptor(file, property, built);
    return built;
}

void keepDocumentDescriptor(ItemContext& file, const PropRef& property, Ref<SimDocDescriptor> descriptor)
{
    PROPCACHE* node = file.find(property.identifier, property.kind());
    if (node == nullptr)
        node = &file.push(std::make_unique<PROPCACHE>());
    RawValue value;
    if (descriptor)
        value = {VarType::object, false, Ref<RawObject>(descriptor)};
    convertValue(*node, property, std::move(value));
}

}  // namespace kelvane
