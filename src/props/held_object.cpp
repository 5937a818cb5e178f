#include "props/held_object.h"

#include <utility>

#include "props/value_convert.h"

namespace kelvane {

bool wasMade(const ItemContext& file, const PropRef& property)
{
    const PROPCACHE* node = file.find(property.identifier, property.kind());
    return node != nullptr && !node->pending();
}

Ref<const RawObject> heldObject(const ItemContext& file, const PropRef& property)
{
    const PROPCACHE* node = file.find(property.identifier, property.kind());
    const auto* object = node != nullptr ? std::get_if<Ref<RawObject>>(&node->raw.data) : nullptr;
    return object != nullptr ? Ref<const RawObject>(object->get()) : Ref<const RawObject>();
}

void keepObject(ItemContext& file, const PropRef& property, Ref<RawObject> object)
{
    PROPCACHE* node = file.find(property.identifier, property.kind());
    if (node == nullptr)
        node = &file.push(std::make_unique<PROPCACHE>());
    RawValue value;
    if (object)
        value = {VarType::object, false, std::move(object)};
    convertValue(*node, property, std::move(value));
}

}  // namespace kelvane
