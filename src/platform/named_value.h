// A property value under its name, as files carry it with them.
#pragma once

#include <string>

#include "platform/raw_value.h"

namespace kelvane {

// A value under its canonical name ("System.Title"), of the type that the property has.
struct NamedValue {
    std::string name;
    RawValue value;
};

}  // namespace kelvane
