#include "app/makers.h"

namespace kelvane::makers {

std::u16string_view supportMail() noexcept
{
    return u"" KELVANE_SUPPORT_MAIL;
}

std::string_view updatePage() noexcept
{
    return KELVANE_UPDATE_PAGE;
}

std::string_view farewellPage() noexcept
{
    return KELVANE_FAREWELL_PAGE;
}

}  // namespace kelvane::makers
