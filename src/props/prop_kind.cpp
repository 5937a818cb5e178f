#include "props/prop_kind.h"

#include "base/text_table.h"

namespace kelvane {

PropKind kindOf(VarType type) noexcept
{
    switch (type) {
    case VarType::empty:
    case VarType::blob:
        return PropKind::none;
    case VarType::oleDate:
    case VarType::fileTime:
        return PropKind::date;
    case VarType::float32:
    case VarType::float64:
        return PropKind::real;
    case VarType::bstr:
    case VarType::narrowText:
    case VarType::wideText:
        return PropKind::text;
    default:
        return PropKind::number;
    }
}

std::u16string_view kindName(PropKind kind) noexcept
{
    switch (kind) {
    case PropKind::number:
        return text(TextId::kindNumber);
    case PropKind::date:
        return text(TextId::kindDate);
    case PropKind::real:
        return text(TextId::kindFloat);
    case PropKind::text:
        return text(TextId::kindText);
    case PropKind::none:
        break;
    }
    return {};
}

}  // namespace kelvane
