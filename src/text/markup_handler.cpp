#include "text/markup_handler.h"

#include <algorithm>

namespace kelvane {

std::string_view localName(std::string_view name)
{
    return name.substr(name.rfind(':') + 1);
}

bool isOneOf(std::span<const std::string_view> names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string_view attributeOf(XmlAttributes attributes, std::string_view name)
{
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [name](const auto& attribute) { return localName(attribute.first) == name; });
    return found != attributes.end() ? found->second : std::string_view();
}

bool MarkupHandler::leavesOut(std::string_view, XmlAttributes)
{
    return false;
}

bool MarkupHandler::elementBegins(std::string_view name, std::span<const Attribute> attributes)
{
    heard_ = true;
    if (leftOut_ > 0 || leavesOut(localName(name), attributes)) {
        ++leftOut_;
        return true;
    }
    begins(localName(name), attributes);
    return wantsMore();
}

bool MarkupHandler::elementEnds(std::string_view name)
{
    if (leftOut_ > 0) {
        --leftOut_;
        return true;
    }
    ends(localName(name));
    return wantsMore();
}

bool MarkupHandler::characters(std::string_view characters)
{
    if (leftOut_ == 0)
        text(characters);
    return wantsMore();
}

}  // namespace kelvane
