// Open regular files that are held while work goes on around them.
#pragma once

#include <memory>
#include <string>

#include "base/result.h"
#include "platform/held_files.h"
#include "platform/linux/volumes.h"

namespace kelvane::linux_os {

// What a held file of this system is beyond the port: the calls that take two files need both descriptors.
class DescriptorHolder {
public:
    virtual ~DescriptorHolder() = default;
    [[nodiscard]] virtual int descriptor() const = 0;
};

[[nodiscard]] Result<std::unique_ptr<HeldFile>> openHeldFile(int folder, const std::string& name,
                                                             std::shared_ptr<Volumes> volumes);

}  // namespace kelvane::linux_os
