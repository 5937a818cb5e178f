// Real files, a list of them, a plan by hand, and a pass over it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cleanup/delete_pass.h"
#include "cleanup/link_pass.h"
#include "platform/platform.h"
#include "support/fake_cleanup_questions.h"
#include "support/fake_journal.h"
#include "support/fakes.h"
#include "support/folder_trash.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

class PassWorld : public PassObserver {
public:
    // As a scan sees it now; `followed` when the scan went through a link to it.
    ItemId list(const std::string& name, std::uint32_t group = 1, Links links = Links::asThemselves)
    {
        FileInfo info = platform->files().details(tree.path(name), links).value();
        if (links == Links::followed)
            info.attributes |= attribute::reparsePoint;
        const auto folder =
            ShellItem::make(nullptr, tree.path(name).parent_path().native(), {}, ShellItem::Place::fileSystem);
        const NativeString last = tree.path(name).filename().native();
        model.add(ShellItem::make(folder, last, info, ShellItem::Place::fileSystem), group, false);
        return ids[name] = model.order().back();
    }
    ItemId write(const std::string& name, const std::string& contents = "same", std::uint32_t group = 1)
    {
        tree.write(name, contents);
        return list(name, group);
    }

    CleanupCommand& command(const std::string& item, const std::string& kept, CleanupAction action, LinkKind link = {})
    {
        CleanupCommand made;
        made.item = ids.at(item);
        made.kept = ids.at(kept);
        made.group = model.item(made.item).groupNumber();
        made.action = action;
        made.link = link;
        made.bytes = made.frees = model.item(made.item).bytes();
        return plan.commands.emplace_back(made);
    }
    CleanupCommand& link(const std::string& item, const std::string& kept, LinkKind kind = LinkKind::hard)
    {
        return command(item, kept, CleanupAction::link, kind);
    }
    CleanupCommand& recycle(const std::string& item, const std::string& kept)
    {
        return command(item, kept, CleanupAction::recycle);
    }

    [[nodiscard]] PassPorts ports() { return {*held, *operations, *files, *paths, clock, elevated, isElevated}; }
    PassOutcome linkAll()
    {
        return outcome = runLinkPass(plan, model, ports(), options, memory, questions, journal, *this, cancel);
    }
    PassOutcome removeAll()
    {
        return outcome = runDeletePass(plan, model, ports(), options, questions, journal, *this, cancel);
    }

    [[nodiscard]] std::string nameOf(ItemId id) const
    {
        for (const auto& [name, known] : ids)
            if (known == id)
                return name;
        return "?";
    }
    [[nodiscard]] bool areOneFile(const std::string& a, const std::string& b)
    {
        return std::filesystem::equivalent(tree.path(a), tree.path(b));
    }
    // Everything that lies in the tree, "," between.
    [[nodiscard]] std::string left() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.path()))
            names.push_back(posix(entry.path().lexically_relative(tree.path())));
        std::sort(names.begin(), names.end());
        std::string all;
        for (const std::string& name : names)
            all += (all.empty() ? "" : ",") + name;
        return all;
    }

    void groupBegins(ItemId original) override { told += "[" + nameOf(original) + "] "; }
    void itemEnded(const ItemOutcome& ended) override
    {
        constexpr const char* results[] = {"done", "failed", "declined", "newOriginal", "notReached"};
        told += nameOf(plan.commands[ended.command].item) + ":" + results[static_cast<int>(ended.result)];
        if (ended.link != LinkKind::none)
            told += " " + std::string(kelvane::nameOf(ended.link)) + ">" + nameOf(ended.kept);
        if (ended.failure)
            told += " " + std::string(kelvane::nameOf(ended.failure->fault));
        told += ended.trashed.empty() ? " " : " trashed ";
        ended_.push_back(ended);
        if (afterItem)
            afterItem(nameOf(plan.commands[ended.command].item));
    }
    void progress(std::uint64_t items, std::uint64_t bytes) override { progressed = {items, bytes}; }

    TempTree tree;
    std::unique_ptr<Platform> platform = makePlatform();
    FolderTrash trash{tree.path() / "trash"};
    HeldFiles* held = &platform->heldFiles();
    FileOperations* operations = &trash;
    FileSystem* files = &platform->files();
    const PathRules* paths = &platform->paths();
    SymbolicLinkService* elevated = nullptr;
    bool isElevated = false;
    FakeClock clock;
    ResultsModel model;
    std::map<std::string, ItemId> ids;
    CleanupPlan plan;
    PassOptions options;
    CleanupMemory memory;
    FakeCleanupQuestions questions;
    FakeJournal journal;
    CancelFlag cancel;
    PassOutcome outcome;
    std::string told;  // "[kept] item:result kind>kept fault "
    std::vector<ItemOutcome> ended_;
    std::pair<std::uint64_t, std::uint64_t> progressed;
    std::function<void(const std::string& item)> afterItem;
};

}  // namespace kelvane::testing
