// Whether this system's adapter sees archives as folders.
#pragma once

namespace kelvane {

// Defined by the adapter that the program is linked with. Where it is false, archives are files like any other,
// whatever a search asks for.
[[nodiscard]] bool archivesAreRead() noexcept;

}  // namespace kelvane
