// Port: which libraries the program works with, for whoever reports a fault; defined by the adapters.
#pragma once

#include <string>
#include <vector>

namespace kelvane {

struct LibraryVersion {
    std::string name;
    std::string version;
};

// The loaded ones by what they say of themselves. Those that only a worker is linked with, as well as libraries of
// headers, by what the program was built with. A window's toolkit is not among them. Thread-safe.
[[nodiscard]] std::vector<LibraryVersion> libraryVersions();

}  // namespace kelvane
