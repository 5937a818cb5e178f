#include "cli/value_json.h"

#include "base/utf.h"

namespace kelvane {
namespace {

// Comparable values are sign-extended, whatever their type; the bits that an unsigned type really has.
std::uint64_t unsignedMask(VarType type)
{
    switch (type) {
    case VarType::uint8:
        return UINT8_MAX;
    case VarType::uint16:
        return UINT16_MAX;
    case VarType::uint32:
    case VarType::machineUint:
        return UINT32_MAX;
    case VarType::uint64:
        return UINT64_MAX;
    default:
        return 0;
    }
}

Json numberJson(const PropValue& value, VarType type)
{
    if (type == VarType::boolean)
        return value.bits != 0;
    if (const std::uint64_t mask = unsignedMask(type); mask != 0)
        return value.bits & mask;
    return value.number();
}

template <class T>
const std::vector<T>* elements(const RawValue& raw)
{
    return raw.isVector ? std::get_if<std::vector<T>>(&raw.data) : nullptr;
}

// A list of texts or numbers; null for anything else.
Json listJson(const RawValue& raw)
{
    if (const auto* doubles = elements<double>(raw))
        return *doubles;
    if (const auto* floats = elements<float>(raw))
        return *floats;
    if (const auto* texts = elements<std::u16string>(raw)) {
        Json list = Json::array();
        for (const auto& text : *texts)
            list.push_back(toUtf8(text));
        return list;
    }
    return nullptr;
}

}  // namespace

std::string dump(const Json& json, Layout layout)
{
    return json.dump(layout == Layout::indented ? 2 : -1, ' ', false, Json::error_handler_t::replace);
}

void addPath(Json& object, std::string_view bytes)
{
    object["path"] = displayText(bytes);
    if (!isValidUtf8(bytes))
        object["pathBytes"] = percentEncode(bytes);
}

Json valueJson(const PropValue& value, const RawValue& raw)
{
    if (Json list = listJson(raw); !list.is_null())
        return list;
    if (value.missing())
        return nullptr;
    switch (value.kind) {
    case PropKind::number:
        return numberJson(value, raw.type);
    case PropKind::date:
        return timeJson({value.number()});
    case PropKind::real:
        return value.real();
    case PropKind::text:
        return toUtf8(value.text);
    case PropKind::none:
        break;
    }
    return nullptr;
}

Json timeJson(FileTime time)
{
    return time.ticks != 0 ? Json(toIso8601(time)) : Json(nullptr);
}

}  // namespace kelvane
