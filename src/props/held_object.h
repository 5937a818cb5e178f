// Objects that were made of files (descriptors, fingerprints, previews) among the values that were read of them.
#pragma once

#include "props/prop_cache.h"
#include "props/property_catalogue.h"

namespace kelvane {

// Whether it was tried to make the object, whatever came of it.
[[nodiscard]] bool wasMade(const ItemContext& file, const PropRef& property);

// What the file's node of the property holds; null where there is none. It lives as long as the node or the reference.
[[nodiscard]] Ref<const RawObject> heldObject(const ItemContext& file, const PropRef& property);

template <class Object>
[[nodiscard]] Ref<const Object> held(const ItemContext& file, const PropRef& property)
{
    return Ref<const Object>(dynamic_cast<const Object*>(heldObject(file, property).get()));
}

// Puts it into the file's node, which is made where there is none; a null reference is kept as a missing value. Used by
// the thread that the context belongs to.
void keepObject(ItemContext& file, const PropRef& property, Ref<RawObject> object);

}  // namespace kelvane
