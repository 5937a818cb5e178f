#include "cli/group_choice.h"

#include <unordered_set>

#include "base/filled_text.h"
#include "cli/settings_in_force.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::size_t position(auto id)
{
    return static_cast<std::size_t>(id);
}

// A file as it was typed: by its path, and on the file system by what it is.
class WantedFile {
public:
    WantedFile(const std::string& typed, Platform& platform) : paths_(platform.paths())
    {
        const std::filesystem::path path = namedFile(typed).lexically_normal();
        path_ = bytesFromNative(path.native());
        const auto item = platform.shell().parse(path.native());
        if (item && (*item)->inFileSystem())
            identity_ = (*item)->info().identity;
    }

    [[nodiscard]] bool is(const ShellItem& file) const
    {
        if (identity_.known() && file.inFileSystem() && file.info().identity == identity_)
            return true;
        return paths_.samePath(bytesFromNative(file.fullName()), path_);
    }

private:
    const PathRules& paths_;
    std::string path_;
    FileIdentity identity_;
};

class ChosenGroups {
public:
    explicit ChosenGroups(ResultsModel& results) : results_(results) {}
    void add(ItemId id)
    {
        const std::size_t group = position(results_.item(id).group);
        if (group >= chosen_.size())
            chosen_.resize(group + 1);
        chosen_[group] = true;
    }
    void show()
    {
        (void)results_.hideUnless(hiding_flag::filter, [&](ItemId id) {
            const std::size_t group = position(results_.item(id).group);
            return group < chosen_.size() && chosen_[group];
        });
    }

private:
    ResultsModel& results_;
    std::vector<bool> chosen_;
};

}  // namespace

bool showGroupsOf(const std::vector<std::string>& typed, SavedScan& scan, Platform& platform, const Console& console)
{
    ChosenGroups groups(scan.results);
    bool allFound = true;
    for (const std::string& name : typed) {
        const WantedFile wanted(name, platform);
        bool found = false;
        scan.results.forEachItem([&](ItemId id) {
            if (!wanted.is(scan.results.item(id).file.item()))
                return;
            groups.add(id);
            found = true;
        });
        if (!found)
            complain(console, filledText(TextId::inNoGroup, {name, scan.name}));
        allFound = allFound && found;
    }
    groups.show();
    return allFound;
}

std::vector<bool> newSince(const SavedScan& earlier, const SavedScan& scan, const PathRules& paths)
{
    const auto key = [&](const SavedScan& of, ItemId id) {
        return paths.comparable(bytesFromNative(of.results.item(id).file.item().fullName()));
    };
    std::unordered_set<std::string> known;
    earlier.results.forEachItem([&](ItemId id) { known.insert(key(earlier, id)); });
    for (const std::string& path : earlier.missingFiles)
        known.insert(paths.comparable(path));
    std::vector<bool> isNew(scan.results.idLimit());
    scan.results.forEachItem([&](ItemId id) { isNew[position(id)] = !known.contains(key(scan, id)); });
    return isNew;
}

void showGroupsWithNew(const std::vector<bool>& isNew, SavedScan& scan)
{
    ChosenGroups groups(scan.results);
    scan.results.forEachItem([&](ItemId id) {
        if (isNew[position(id)])
            groups.add(id);
    });
    groups.show();
}

}  // namespace kelvane
