// A line of a person's list of content plug-ins.
#pragma once

#include <filesystem>
#include <string>

namespace kelvane {

struct ContentPluginEntry {
    std::filesystem::path path;  // of the library; absolute
    std::string detect;          // in place of the plug-in's own detect string; empty: that one counts
    friend bool operator==(const ContentPluginEntry&, const ContentPluginEntry&) = default;
};

}  // namespace kelvane
