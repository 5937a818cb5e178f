// Zip packages, down to the library that reads them.
#include "../support/bytes_file.h"
#include "platform/linux/adapters.h"
#include "require.h"

namespace kelvane {
namespace {

constexpr std::uint64_t limit = 4096;

// Every other part is passed over, which makes the library seek.
void tryPackage(std::string bytes)
{
    testing::BytesFile file(std::move(bytes));
    const auto packages = makeLibarchivePackages();
    unsigned parts = 0;
    bool failed = false;
    const Status status = packages->walk(file, [&](PackagePart& part) {
        if (++parts % 2 == 0)
            return true;
        bool cut = false;
        const auto content = part.read(limit, &cut);
        require(!content || content->size() <= limit);
        require(!content || !cut || content->size() == limit);
        failed = failed || !content;
        return true;
    });
    require(parts <= 65'535);
    require(!failed || !status);
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelvane::tryPackage({reinterpret_cast<const char*>(data), size});
    return 0;
}
