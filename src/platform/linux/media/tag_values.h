// From the words of tags to values of properties.
#pragma once

#include <taglib/tpropertymap.h>

#include "platform/fact_list.h"

namespace kelvane::linux_os {

[[nodiscard]] std::u16string taggedText(const TagLib::String& text);

// What the map tells of titles, people, numbers and the rest, under the keys on which TagLib brings all formats.
void addMappedTags(const TagLib::PropertyMap& map, FactList& facts);

}  // namespace kelvane::linux_os
