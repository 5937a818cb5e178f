#include "cleanup/temporary_name.h"

#include <charconv>

#include "cleanup/journal.h"

namespace kelvane {
namespace {

NativeString hexadecimal(std::uint64_t number)
{
    char digits[16];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number, 16).ptr;
    return NativeString(std::begin(digits), end);
}

// Within a character, in UTF-8 or UTF-16.
template <class Char>
bool isContinuation(Char unit)
{
    if constexpr (sizeof(Char) == 1)
        return (static_cast<unsigned char>(unit) & 0xC0) == 0x80;
    else
        return (static_cast<std::uint32_t>(unit) & 0xFC00) == 0xDC00;
}

NativeView shortened(NativeView name)
{
    constexpr std::size_t step = 8;
    std::size_t length = name.size() > step ? name.size() - step : 0;
    while (length > 0 && isContinuation(name[length]))
        --length;
    return name.substr(0, length);
}

enum class NameState { free, taken, refused };

Result<NameState> stateOf(const HeldFolder& folder, const NativeString& name)
{
    const auto found = folder.look(name);
    // `changed` is a file that goes as soon as nobody holds it any more.
    if (found || found.error().kind == ErrorKind::changed)
        return NameState::taken;
    if (found.error().kind == ErrorKind::notFound)
        return NameState::free;
    if (found.error().kind == ErrorKind::invalid)
        return NameState::refused;
    return found.error();
}

// Of the name and of the longer one that belongs to it.
Result<NameState> stateOfBoth(const HeldFolder& folder, const NativeString& name)
{
    const auto longer = stateOf(folder, asideName(name));
    return longer && *longer == NameState::free ? stateOf(folder, name) : longer;
}

}  // namespace

Result<NativeString> freeTemporaryName(const HeldFolder& folder, NativeView item, std::uint64_t ticks)
{
    constexpr int mostTries = 10'000;
    for (int tries = 0; tries < mostTries; ++tries) {
        NativeString name = NativeString(item) + hexadecimal(ticks);
        const auto state = stateOfBoth(folder, name);
        if (!state)
            return state.error();
        if (*state == NameState::free)
            return name;
        if (*state == NameState::taken)
            ++ticks;
        else if (item.empty())
            return Error{ErrorKind::invalid, 0, {}};
        else
            item = shortened(item);
    }
    return Error{ErrorKind::exists, 0, {}};
}

}  // namespace kelvane
