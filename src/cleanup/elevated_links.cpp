#include "cleanup/elevated_links.h"

#include "base/text_table.h"

namespace kelvane {
namespace {

constexpr std::uint32_t elevationNotice = 0x100;

}  // namespace

Status ElevatedLinks::make(const std::filesystem::path& link, const std::filesystem::path& target, const Error& own)
{
    // A name that is taken is taken for an administrator as well.
    if (ports_.elevated == nullptr || ports_.isElevated || own.kind == ErrorKind::exists || !mayStart())
        return own;
    const Status made = ports_.elevated->make(link, target);
    if (!made && made.error().kind == ErrorKind::cancelled)
        memory_.elevationDeclined = true;
    return made;
}

bool ElevatedLinks::mayStart()
{
    if (memory_.elevationDeclined || memory_.elevationAccepted || !options_.offerElevation || noticesOff_ != 0)
        return !memory_.elevationDeclined;
    const ElevationAnswer answer = questions_.startElevated(text(TextId::elevationQuestion));
    if (answer.doNotAskAgain)
        noticesOff_ |= elevationNotice;
    (answer.start ? memory_.elevationAccepted : memory_.elevationDeclined) = true;
    return answer.start;
}

}  // namespace kelvane
