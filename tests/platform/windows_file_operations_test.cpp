// The recycle bin of Windows: what is let go there, what the shell's answers mean, and the way back.
#include <windows.h>

#include <sherrors.h>
#include <shobjidl.h>

#include "platform/windows/adapters.h"
#include "platform/windows/file_facts.h"
#include "platform/windows/os_error.h"
#include "platform/windows/recycle_listener.h"
#include "platform/windows/system_path.h"
#include "platform/windows/trash_paths.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using windows_os::ComOnThread;
using windows_os::ComPointer;
using windows_os::RecycleState;

FileIdentity identityOf(const std::filesystem::path& path)
{
    const auto details = windows_os::lookUp(windows_os::systemPath(path), false);
    return details ? details->identity : FileIdentity{};
}

ComPointer<IShellItem> shellItem(const std::filesystem::path& path)
{
    void* object = nullptr;
    EXPECT_EQ(::SHCreateItemFromParsingName(path.c_str(), nullptr, IID_IShellItem, &object), S_OK);
    return ComPointer<IShellItem>(static_cast<IShellItem*>(object));
}

class RecycleListenerTest : public ::testing::Test {
protected:
    RecycleState state_;
    ComOnThread com_;
    testing::TempTree tree_;
    RemovalItem item_{tree_.write("file", "x"), identityOf(tree_.path("file")), Removal::toTrash};
    ComPointer<IFileOperationProgressSink> listener_ = windows_os::makeRecycleListener(item_, state_);
    ComPointer<IShellItem> shown_ = shellItem(item_.path);
};

TEST_F(RecycleListenerTest, OnlyTheItemItselfGoesAndOnlyWhereItCanComeBack)
{
    EXPECT_EQ(listener_->PreDeleteItem(TSF_DELETE_RECYCLE_IF_POSSIBLE, shown_.get()), S_OK);
    EXPECT_FALSE(state_.refused.has_value());
    EXPECT_EQ(listener_->PreDeleteItem(0, shown_.get()), E_ABORT);
    EXPECT_EQ(state_.refused->kind, ErrorKind::notSupported);

    state_ = {};
    const auto other = shellItem(tree_.write("other", "x"));
    EXPECT_EQ(listener_->PreDeleteItem(TSF_DELETE_RECYCLE_IF_POSSIBLE, other.get()), E_ABORT);
    EXPECT_EQ(state_.refused->kind, ErrorKind::changed);
    EXPECT_EQ(listener_->PreDeleteItem(TSF_DELETE_RECYCLE_IF_POSSIBLE, nullptr), E_ABORT);
}

TEST_F(RecycleListenerTest, AnswersOfTheShellBecomeOutcomes)
{
    struct Case {
        HRESULT result;
        bool decisive;
        std::optional<ErrorKind> kind;
    };
    const Case cases[] = {
        {S_OK, true, std::nullopt},
        {COPYENGINE_S_PENDING, false, std::nullopt},
        {COPYENGINE_E_REQUIRES_ELEVATION, false, ErrorKind::accessDenied},
        {COPYENGINE_S_USER_IGNORED, true, ErrorKind::io},
        {COPYENGINE_E_SHARING_VIOLATION_SRC, true, ErrorKind::accessDenied},
        {COPYENGINE_E_PATH_NOT_FOUND_SRC, true, ErrorKind::notFound},
        {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), true, ErrorKind::notFound},
        {COPYENGINE_E_USER_CANCELLED, true, ErrorKind::cancelled},
    };
    for (const Case& one : cases) {
        state_ = {};
        EXPECT_EQ(listener_->PostDeleteItem(0, shown_.get(), one.result, shown_.get()), S_OK);
        ASSERT_EQ(state_.told.has_value(), one.decisive) << std::hex << one.result;
        if (!one.decisive)
            continue;
        EXPECT_EQ(state_.told->code, one.result);
        EXPECT_EQ(state_.told->error ? std::optional(state_.told->error->kind) : std::nullopt, one.kind)
            << std::hex << one.result;
        EXPECT_EQ(state_.told->trashed, one.kind ? std::nullopt : std::optional(item_.path));
    }
    EXPECT_EQ(windows_os::resultOf(windows_os::osError(ERROR_ACCESS_DENIED)), E_ACCESSDENIED);
}

TEST_F(RecycleListenerTest, LivesAsLongAsSomebodyHoldsIt)
{
    void* again = nullptr;
    ASSERT_EQ(listener_->QueryInterface(IID_IFileOperationProgressSink, &again), S_OK);
    const ComPointer<IFileOperationProgressSink> second(static_cast<IFileOperationProgressSink*>(again));
    EXPECT_EQ(second.get(), listener_.get());
    listener_.reset();
    EXPECT_EQ(second->StartOperations(), S_OK);
    EXPECT_EQ(second->QueryInterface(IID_IShellItem, &again), E_NOINTERFACE);
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(second->AddRef(), 2u);
    EXPECT_EQ(second->Release(), 1u);
}

TEST(TrashPaths, AreKnownByTheFolderOfTheBin)
{
    using windows_os::liesInTrash;
    for (const wchar_t* path :
         {LR"(C:\$Recycle.Bin\S-1-5-21\$RABCDEF.txt)", LR"(d:\$RECYCLE.BIN\x\y\z)", LR"(E:\Recycler\S-1\Dc1.txt)",
          LR"(C:\RECYCLED)", LR"(\\server\share\$Recycle.bin\$R1)", LR"(\\?\C:\$Recycle.Bin)"})
        EXPECT_TRUE(liesInTrash(path)) << std::filesystem::path(path);
    for (const wchar_t* path : {LR"(C:\Recycle.Bin\a)", LR"(C:\$Recycle.Bin.old\a)", LR"(C:\a\$RABCDEF.txt)", L""})
        EXPECT_FALSE(liesInTrash(path)) << std::filesystem::path(path);
    EXPECT_EQ(windows_os::trashNote(LR"(C:\$Recycle.Bin\S-1\$RABCDEF.txt)"), LR"(C:\$Recycle.Bin\S-1\$IABCDEF.txt)");
    EXPECT_EQ(windows_os::trashNote(LR"(C:\$Recycle.Bin\S-1\Dc1.txt)"), std::nullopt);
}

TEST(WindowsRestore, MovesOutOfTheBinWithItsNoteAndReplacesNothing)
{
    const testing::TempTree tree;
    const auto operations = makeWindowsFileOperations();
    const auto trashed = tree.write("$Recycle.Bin/S-1/$RABC.txt", "back");
    const auto note = tree.write("$Recycle.Bin/S-1/$IABC.txt", "note");
    const auto place = tree.write("file.txt", "new");
    EXPECT_TRUE(operations->isInTrash(trashed));

    EXPECT_EQ(operations->restore(trashed, place).error().kind, ErrorKind::exists);
    EXPECT_EQ(tree.read("file.txt"), "new");
    EXPECT_TRUE(std::filesystem::exists(note));
    EXPECT_EQ(operations->restore(trashed, tree.path("none/file.txt")).error().kind, ErrorKind::notFound);
    EXPECT_FALSE(operations->restore(place, tree.path("other.txt")).ok()) << "what lies in no bin stays";

    tree.remove("file.txt");
    EXPECT_TRUE(operations->restore(trashed, place).ok());
    EXPECT_EQ(tree.read("file.txt"), "back");
    EXPECT_FALSE(std::filesystem::exists(note));
    EXPECT_EQ(operations->restore(trashed, place).error().kind, ErrorKind::notFound);
}

}  // namespace
}  // namespace kelvane
