// Which file names a scan looks at.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// A list of masks. A mask without a dot is held against the extension ("jpg", "aif*"); one with a dot against the whole
// name ("report*.pdf"; a leading "*." is the same as the bare extension). "*" admits every file. Case of A to Z is
// ignored. Immutable and thread-safe.
class FileMasks {
public:
    FileMasks() = default;  // admits every file
    explicit FileMasks(std::string_view commaSeparated);

    [[nodiscard]] bool admitsAll() const { return masks_.empty(); }
    [[nodiscard]] bool admits(std::string_view fileName) const;

private:
    struct Mask {
        std::string pattern;
        bool wholeName = false;
    };
    std::vector<Mask> masks_;
};

}  // namespace kelvane
