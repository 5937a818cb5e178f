// What the promises of the file-system port are tested on: one world for each version of it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace kelvane::testing {

// A file system with a folder of its own to play in. Names are relative to that folder.
class FileWorld {
public:
    virtual ~FileWorld() = default;
    virtual FileSystem& files() = 0;
    [[nodiscard]] virtual std::filesystem::path path(const std::string& name) const = 0;
    virtual void write(const std::string& name, const std::string& contents) = 0;  // in place when it exists
    virtual void folder(const std::string& name) = 0;
    virtual void hardLink(const std::string& name, const std::string& existing) = 0;
    virtual void link(const std::string& name, const std::string& target) = 0;  // the target as it is
    virtual void other(const std::string& name) = 0;                            // neither file, folder nor link
    virtual void remove(const std::string& name) = 0;
    // False where streams cannot be made here.
    [[nodiscard]] virtual bool stream(const std::string& name, const std::string& stream,
                                      const std::string& contents) = 0;
};

struct WorldMaker {
    std::string name;
    std::function<std::unique_ptr<FileWorld>()> make;
};

[[nodiscard]] std::vector<WorldMaker> allWorlds();

}  // namespace kelvane::testing
