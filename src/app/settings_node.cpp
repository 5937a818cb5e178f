#include "app/settings_node.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::size_t longestText = 99'999;

}  // namespace

std::u16string joinSettingsPath(std::u16string_view parent, std::u16string_view name)
{
    if (name.empty())
        return std::u16string(parent.ends_with(u'\\') ? parent.substr(0, parent.size() - 1) : parent);
    std::u16string path(parent);
    if (!path.empty() && !path.ends_with(u'\\'))
        path += u'\\';
    return path.append(name);
}

SettingsNode::SettingsNode(const SettingsRoot& root, std::u16string path, SettingsAccess access, bool /*joined*/)
    : root_(root), path_(std::move(path)), access_(access), section_(root_.store->open(path_, access))
{
}

SettingsNode::SettingsNode(const SettingsRoot& root, std::u16string_view name, SettingsAccess access)
    : SettingsNode(root, joinSettingsPath(root.location.keyPath, name), access, true)
{
}

SettingsNode::SettingsNode(const SettingsNode& parent, std::u16string_view name, SettingsAccess access)
    : SettingsNode(parent.root_, joinSettingsPath(parent.path_, name), access, true)
{
}

SettingsCode SettingsNode::unopened() const
{
    return isIni() ? SettingsCode::notFound : SettingsCode::noKey;
}

// The profile functions of Windows only say that they failed.
SettingsCode SettingsNode::afterWrite(SettingsCode code, SettingsCode iniFailure) const
{
    const bool telling = code == SettingsCode::done || code == SettingsCode::tooLong;
    return isIni() && !telling && access_ == SettingsAccess::writing ? iniFailure : code;
}

SettingsCode SettingsNode::readNumber(std::u16string_view name, std::uint32_t& value) const
{
    return isOpen() ? section_->readNumber(name, value) : SettingsCode::invalidData;
}

SettingsCode SettingsNode::writeNumber(std::uint32_t value, std::u16string_view name)
{
    const SettingsCode code = isOpen() ? section_->writeNumber(name, value) : SettingsCode::noKey;
    return afterWrite(code, SettingsCode::invalidData);
}

SettingsCode SettingsNode::readBinary(std::vector<std::byte>& block, std::u16string_view name) const
{
    block.clear();
    return isOpen() ? section_->readBlock(name, block) : unopened();
}

SettingsCode SettingsNode::readBinary(std::byte* buffer, std::u16string_view name, std::size_t& size) const
{
    std::vector<std::byte> block;
    if (const SettingsCode code = readBinary(block, name); code != SettingsCode::done)
        return code;
    const std::size_t room = std::exchange(size, block.size());
    if (buffer == nullptr)
        return SettingsCode::done;
    if (room < block.size())
        return SettingsCode::moreData;
    std::copy(block.begin(), block.end(), buffer);
    return SettingsCode::done;
}

SettingsCode SettingsNode::writeBinary(const std::byte* bytes, std::u16string_view name, std::size_t size)
{
    if (bytes == nullptr)
        return SettingsCode::invalidData;
    const SettingsCode code = isOpen() ? section_->writeBlock(name, {bytes, bytes + size}) : SettingsCode::noKey;
    return afterWrite(code, SettingsCode::notFound);
}

SettingsCode SettingsNode::readString(std::u16string& text, std::u16string_view name) const
{
    text.clear();
    const SettingsCode code = isOpen() ? section_->readText(name, text) : unopened();
    if (code != SettingsCode::done)
        text.clear();
    text.resize(std::min(text.size(), longestText));
    return code;
}

SettingsCode SettingsNode::writeString(std::u16string_view text, std::u16string_view name)
{
    const SettingsCode code = isOpen() ? section_->writeText(name, text) : SettingsCode::noKey;
    return afterWrite(code, SettingsCode::invalidData);
}

std::vector<std::u16string> SettingsNode::valueNames() const
{
    return isOpen() ? section_->valueNames() : std::vector<std::u16string>{};
}

std::vector<std::u16string> SettingsNode::subsectionNames() const
{
    return isOpen() ? section_->subsectionNames() : std::vector<std::u16string>{};
}

SettingsCode SettingsNode::deleteValue(std::u16string_view name)
{
    return isOpen() ? section_->deleteValue(name) : unopened();
}

SettingsCode SettingsNode::deleteSubsection(std::u16string_view name)
{
    return root_.store->deleteSection(joinSettingsPath(path_, name));
}

}  // namespace kelvane
