// What properties are called in windows: the catalogue's names, in the language in force.
#pragma once

#include <QString>

#include "props/property_catalogue.h"

namespace kelvane {

// No two properties of the catalogue have the same one. The canonical name where the catalogue has no other; empty for
// an empty reference. Safe on every thread.
[[nodiscard]] QString propertyTitle(const PropRef& property);

// Whether its values say something to a person: previews and fingerprints do not.
[[nodiscard]] bool isForPeople(const PropRef& property);

// What a person wants to know beside the title: a sentence, or the kind of files that have it; may be empty.
[[nodiscard]] QString propertyDescription(const PropRef& property);

}  // namespace kelvane
