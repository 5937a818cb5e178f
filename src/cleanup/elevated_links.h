// Symbolic links that this process may not make itself.
#pragma once

#include "cleanup/cleanup_pass.h"

namespace kelvane {

// Asks once whether an administrator's process shall help, and then asks that process. One thread; everything given
// outlives it.
class ElevatedLinks {
public:
    ElevatedLinks(const PassPorts& ports, const PassOptions& options, CleanupMemory& memory,
                  CleanupQuestions& questions)
        : ports_(ports), options_(options), memory_(memory), questions_(questions)
    {
    }

    // After this process failed with `own`, which is the answer as well where nobody helps.
    [[nodiscard]] Status make(const std::filesystem::path& link, const std::filesystem::path& target, const Error& own);

    // Bits of bin1OffNotify that the person set.
    [[nodiscard]] std::uint32_t noticesOff() const { return noticesOff_; }

private:
    [[nodiscard]] bool mayStart();

    const PassPorts& ports_;
    const PassOptions& options_;
    CleanupMemory& memory_;
    CleanupQuestions& questions_;
    std::uint32_t noticesOff_ = 0;
};

}  // namespace kelvane
