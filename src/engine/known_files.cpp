#include "engine/known_files.h"

#include <algorithm>

#include "engine/same_file.h"
#include "platform/native_text.h"

namespace kelvane {

bool KnownFiles::insert(const ShellItem& item)
{
    if (hasIdentity(item))
        return insertIdentity(item.info().identity);
    return paths_.insert(rules_.comparable(bytesFromNative(item.fullName()))).second;
}

bool KnownFiles::insertIdentity(FileIdentity identity)
{
    if (!many_.empty())
        return many_.insert(identity).second;
    if (std::find(few_.begin(), few_.end(), identity) != few_.end())
        return false;
    few_.push_back(identity);
    if (few_.size() > fewFiles)
        many_.insert(few_.begin(), few_.end());
    return true;
}

void KnownFiles::clear()
{
    few_.clear();
    many_.clear();
    paths_.clear();
}

}  // namespace kelvane
