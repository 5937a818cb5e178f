// What the promises of the file-system port are tested on: one world for each version of it.
#pragma once

#include "platform/platform.h"
#include "support/memory_file_system.h"
#include "support/paths.h"
#include "support/real_files.h"
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
    virtual void hide(const std::string& name) = 0;
    // False where these cannot be made here; the target as it is.
    [[nodiscard]] virtual bool link(const std::string& name, const std::string& target) = 0;
    [[nodiscard]] virtual bool other(const std::string& name) = 0;  // neither file, folder nor link
    virtual void remove(const std::string& name) = 0;
    [[nodiscard]] virtual bool stream(const std::string& name, const std::string& stream,
                                      const std::string& contents) = 0;
    [[nodiscard]] virtual std::vector<std::string> unusualNames() const { return testing::unusualNames(); }
};

struct WorldMaker {
    std::string name;
    std::function<std::unique_ptr<FileWorld>()> make;
};

class MemoryWorld final : public FileWorld {
public:
    MemoryWorld() { files_.addFolder("/world"); }
    FileSystem& files() override { return files_; }
    std::filesystem::path path(const std::string& name) const override { return native(inTree(name)); }
    void write(const std::string& name, const std::string& contents) override
    {
        if (files_.details(path(name), Links::followed))
            files_.setContents(inTree(name), contents);
        else
            files_.addFile(inTree(name), contents);
    }
    void folder(const std::string& name) override { files_.addFolder(inTree(name)); }
    void hardLink(const std::string& name, const std::string& existing) override
    {
        files_.addHardLink(inTree(name), inTree(existing));
    }
    void hide(const std::string& /*name*/) override {}  // the dot does
    bool link(const std::string& name, const std::string& target) override
    {
        files_.addSymbolicLink(inTree(name), target);
        return true;
    }
    bool other(const std::string& name) override
    {
        files_.addOther(inTree(name));
        return true;
    }
    void remove(const std::string& name) override { files_.remove(inTree(name)); }
    bool stream(const std::string& name, const std::string& stream, const std::string& contents) override
    {
        files_.addStream(inTree(name), stream, contents);
        return true;
    }

private:
    static std::string inTree(const std::string& name) { return "/world/" + name; }

    MemoryFileSystem files_;
};

// This system's own.
class RealWorld final : public FileWorld {
public:
    FileSystem& files() override { return platform_->files(); }
    std::filesystem::path path(const std::string& name) const override { return tree_.path(name); }
    void write(const std::string& name, const std::string& contents) override { tree_.write(name, contents); }
    void folder(const std::string& name) override { tree_.folder(name); }
    void hardLink(const std::string& name, const std::string& existing) override { tree_.hardLink(name, existing); }
    void hide(const std::string& name) override { testing::hide(path(name)); }
    bool link(const std::string& name, const std::string& target) override
    {
        return makeSymbolicLink(path(name), native(target));
    }
    bool other(const std::string& name) override { return makeNeitherFileNorFolder(path(name)); }
    void remove(const std::string& name) override { tree_.remove(name); }
    bool stream(const std::string& name, const std::string& stream, const std::string& contents) override
    {
        return makeStream(path(name), stream, contents);
    }

private:
    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
};

inline std::vector<WorldMaker> allWorlds()
{
    return {{"memory", [] { return std::make_unique<MemoryWorld>(); }},
            {"system", [] { return std::make_unique<RealWorld>(); }}};
}

}  // namespace kelvane::testing
