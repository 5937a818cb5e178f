// What programs write into pictures as XMP (ISO 16684-1).
#pragma once

#include <cstddef>
#include <span>

#include "platform/fact_list.h"
#include "platform/xml_parsing.h"

namespace kelvane {

// Properties under the prefixes that their schemas recommend, as all programs write them. What is not well-formed XML
// gives what comes before the fault, or nothing.
void addXmpFacts(std::span<const std::byte> packet, XmlParsing& xml, FactList& facts);

}  // namespace kelvane
