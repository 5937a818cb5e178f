#include "platform/windows/open_files.h"

#include <algorithm>

#include "platform/windows/file_facts.h"

namespace kelvane::windows_os {

OpenFile::OpenFile(Handle file) : file_(std::move(file)), identity_(identityOf(file_.get()))
{
    BY_HANDLE_FILE_INFORMATION facts{};
    ::GetFileInformationByHandle(file_.get(), &facts);
    id_.dwSize = sizeof id_;
    id_.Type = FileIdType;
    id_.FileId.LowPart = facts.nFileIndexLow;
    id_.FileId.HighPart = static_cast<LONG>(facts.nFileIndexHigh);
}

void OpenFile::openAgain(HANDLE folder)
{
    Handle again(::OpenFileById(folder, &id_, GENERIC_READ, shareAll, nullptr, FILE_FLAG_OPEN_REPARSE_POINT));
    if (again.valid() && identityOf(again.get()) == identity_)
        file_ = std::move(again);
}

void OpenFiles::add(OpenFile& file)
{
    const std::lock_guard lock(mutex_);
    files_.push_back(&file);
}

void OpenFiles::remove(OpenFile& file)
{
    const std::lock_guard lock(mutex_);
    files_.erase(std::find(files_.begin(), files_.end(), &file));
}

LetGo::LetGo(OpenFiles& files, FileIdentity identity, HANDLE anyOnTheVolume)
    : lock_(files.mutex_), volume_(anyOnTheVolume)
{
    for (OpenFile* file : files.files_)
        if (identity.known() && file->identity() == identity) {
            file->close();
            closed_.push_back(file);
        }
}

LetGo::~LetGo()
{
    for (OpenFile* file : closed_)
        file->openAgain(volume_);
}

}  // namespace kelvane::windows_os
