#include "platform/linux/adapters.h"
#include "platform/linux/worker_start.h"
#include "platform/worker_requests.h"

namespace kelvane {
namespace linux_os {
namespace {

class LinuxWorkerPlatform final : public WorkerPlatform {
public:
    WorkerRequests& requests() override { return requests_; }
    TextDecoding& decoding() override { return *decoding_; }
    XmlParsing& xml() override { return *xml_; }
    PackagedFiles& packages() override { return *packages_; }
    FilterPrograms& filters() override { return *filters_; }
    SharedLibraries& libraries() override { return *libraries_; }

private:
    SocketRequests requests_;
    std::unique_ptr<TextDecoding> decoding_ = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml_ = makePugixmlParsing();
    std::unique_ptr<PackagedFiles> packages_ = makeLibarchivePackages();
    std::unique_ptr<FilterPrograms> filters_ = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    std::unique_ptr<SharedLibraries> libraries_ = makeLinuxSharedLibraries();
};

}  // namespace
}  // namespace linux_os

Result<std::unique_ptr<WorkerPlatform>> makeWorkerPlatform(int argumentCount, char** arguments)
{
    std::unique_ptr<linux_os::LinuxWorkerPlatform> platform;
    const Status status = linux_os::becomeWorker(WorkerProgram::documents, argumentCount, arguments,
                                                 [&] { platform = std::make_unique<linux_os::LinuxWorkerPlatform>(); });
    if (!status)
        return status.error();
    return std::unique_ptr<WorkerPlatform>(std::move(platform));
}

}  // namespace kelvane
