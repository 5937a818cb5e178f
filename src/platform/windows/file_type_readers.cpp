#include "platform/windows/adapters.h"

namespace kelvane {
namespace {

// Knows no file type: properties that only a look into the file can tell (tags, dimensions, durations) are empty so
// far. The system's own property handlers are to be asked here.
class FileTypeReaders final : public PropertyReaders {
public:
    RawValue read(const PropertyInfo& /*property*/, const ShellItem& /*item*/) override { return {}; }
};

}  // namespace

std::unique_ptr<PropertyReaders> makeFileTypeReaders()
{
    return std::make_unique<FileTypeReaders>();
}

}  // namespace kelvane
