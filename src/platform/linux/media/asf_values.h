// What WMA and WMV files say under names of their own.
#pragma once

#include <taglib/asffile.h>

#include "platform/fact_list.h"

namespace kelvane::linux_os {

// Their attributes are the published properties of media under older names; the library knows those of music alone.
void addAsfAttributes(const TagLib::ASF::Tag& tag, FactList& facts);

}  // namespace kelvane::linux_os
