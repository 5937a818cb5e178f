// What tags of MP3 say in ways of their own.
#pragma once

#include <taglib/id3v2tag.h>
#include <taglib/tfile.h>
#include <taglib/tpropertymap.h>

#include "platform/fact_list.h"

namespace kelvane::linux_os {

// The tag of version 2 that a file of any format has; null for none.
[[nodiscard]] TagLib::ID3v2::Tag* id3v2TagOf(TagLib::File& file);

// Up to version 2.3 one text holds several people with "/" between them (ID3v2.3.0, section 4.2.1); takes them apart.
void separatePeople(const TagLib::ID3v2::Tag& tag, TagLib::PropertyMap& map);

// What a person thinks of it.
void addPopularity(const TagLib::ID3v2::Tag& tag, FactList& facts);

}  // namespace kelvane::linux_os
