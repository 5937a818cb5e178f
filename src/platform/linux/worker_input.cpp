#include "platform/linux/worker_input.h"

#include "platform/linux/file_reader.h"
#include "platform/linux/sealed_memory.h"

namespace kelvane::linux_os {

Result<FileHandle> openWorkerInput(const WorkerInput& input)
{
    if (input.path.empty())
        return sealedMemory(input.bytes);
    auto file = openRegularFile(input.path, input.links);
    if (!file)
        return file.error();
    return std::move(file->handle);
}

}  // namespace kelvane::linux_os
