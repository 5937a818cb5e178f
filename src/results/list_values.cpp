#include "results/list_values.h"

#include <algorithm>
#include <array>

namespace kelvane {
namespace {

constexpr std::array madeOfName = {
    property_id::fileName,      property_id::itemName,
    property_id::parsingName,   property_id::itemNameDisplayWithoutExtension,
    property_id::parsingPath,   property_id::itemNameDisplay,
    property_id::fileExtension, property_id::itemFolderPathDisplay,
    property_id::itemUrl,       property_id::itemFolderNameDisplay,
    property_id::itemType,      property_id::itemPathDisplay,
    property_id::itemTypeText,
};

}  // namespace

bool isMadeOfName(const PropRef& property)
{
    return std::find(madeOfName.begin(), madeOfName.end(), property.identifier) != madeOfName.end();
}

}  // namespace kelvane
