// What agencies and their programs write into pictures: IPTC Information Interchange Model 4.2.
#pragma once

#include <string_view>

#include "platform/fact_list.h"

namespace kelvane {

// The records as they are, or in the block of resources that JPEG files keep them in ("Photoshop 3.0").
void addIptcFacts(std::string_view block, FactList& facts);

}  // namespace kelvane
