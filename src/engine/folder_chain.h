// Folders met again and again on the way to many files, each looked up once.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/shell_namespace.h"

namespace kelvane {

// Used by one thread. The file system must outlive it.
class FolderChain {
public:
    // All paths lie in `top`, or top is empty.
    FolderChain(FileSystem& files, NativeString top);

    // Whether there is a folder at `top`; looked up once.
    [[nodiscard]] bool hasTop() { return topFolder() != nullptr; }

    // The item of the folder that holds the file at this absolute path. Null when there is no such folder.
    [[nodiscard]] Ref<const ShellItem> folderOf(NativeView path);

private:
    struct Key {
        const ShellItem* parent;
        NativeString name;
    };
    struct View {
        const ShellItem* parent;
        NativeView name;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const Key& key) const { return of(key.parent, key.name); }
        std::size_t operator()(const View& key) const { return of(key.parent, key.name); }
        static std::size_t of(const ShellItem* parent, NativeView name);
    };
    struct Equal {
        using is_transparent = void;
        template <class A, class B>
        bool operator()(const A& a, const B& b) const
        {
            return a.parent == b.parent && NativeView(a.name) == NativeView(b.name);
        }
    };

    [[nodiscard]] const Ref<const ShellItem>& child(const Ref<const ShellItem>& parent, NativeView name,
                                                    NativeView path);

    [[nodiscard]] const Ref<const ShellItem>& topFolder();

    FileSystem& files_;
    NativeString top_;
    std::optional<Ref<const ShellItem>> topFolder_;  // null inside when it is not there
    // A name that leads to no folder is kept as well: nothing below it is asked for again.
    std::unordered_map<Key, Ref<const ShellItem>, Hash, Equal> folders_;
};

}  // namespace kelvane
