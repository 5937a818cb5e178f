// What the promises of the file-system port are tested on: one world for each version of it.
#pragma once

#include <sys/stat.h>
#include <sys/xattr.h>

#include "platform/linux/adapters.h"
#include "support/memory_file_system.h"
#include "support/temp_tree.h"

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

class MemoryWorld final : public FileWorld {
public:
    MemoryWorld() { files_.addFolder("/world"); }
    FileSystem& files() override { return files_; }
    std::filesystem::path path(const std::string& name) const override { return "/world/" + name; }
    void write(const std::string& name, const std::string& contents) override
    {
        if (files_.details(path(name), Links::followed))
            files_.setContents(path(name), contents);
        else
            files_.addFile(path(name), contents);
    }
    void folder(const std::string& name) override { files_.addFolder(path(name)); }
    void hardLink(const std::string& name, const std::string& existing) override
    {
        files_.addHardLink(path(name), path(existing));
    }
    void link(const std::string& name, const std::string& target) override
    {
        files_.addSymbolicLink(path(name), target);
    }
    void other(const std::string& name) override { files_.addOther(path(name)); }
    void remove(const std::string& name) override { files_.remove(path(name)); }
    bool stream(const std::string& name, const std::string& stream, const std::string& contents) override
    {
        files_.addStream(path(name), stream, contents);
        return true;
    }

private:
    MemoryFileSystem files_;
};

class LinuxWorld final : public FileWorld {
public:
    FileSystem& files() override { return *files_; }
    std::filesystem::path path(const std::string& name) const override { return tree_.path(name); }
    void write(const std::string& name, const std::string& contents) override { tree_.write(name, contents); }
    void folder(const std::string& name) override { tree_.folder(name); }
    void hardLink(const std::string& name, const std::string& existing) override { tree_.hardLink(name, existing); }
    void link(const std::string& name, const std::string& target) override { tree_.symlink(name, target); }
    void other(const std::string& name) override { ASSERT_EQ(::mkfifo(path(name).c_str(), 0600), 0); }
    void remove(const std::string& name) override { tree_.remove(name); }
    bool stream(const std::string& name, const std::string& stream, const std::string& contents) override
    {
        const std::string attribute = "user." + stream;
        return ::setxattr(path(name).c_str(), attribute.c_str(), contents.data(), contents.size(), 0) == 0;
    }

private:
    TempTree tree_;
    std::unique_ptr<FileSystem> files_ = makeLinuxFileSystem();
};

inline std::vector<WorldMaker> allWorlds()
{
    return {{"memory", [] { return std::make_unique<MemoryWorld>(); }},
            {"linux", [] { return std::make_unique<LinuxWorld>(); }}};
}

}  // namespace kelvane::testing
