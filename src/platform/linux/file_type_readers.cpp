#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

// Knows no file type: properties that only a look into a file can tell (tags, dimensions, durations) are empty so far.
// Readers by file type come with the media and document work.
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
