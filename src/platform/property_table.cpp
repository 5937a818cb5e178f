#include "platform/property_table.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

class PropertyTable final : public PropertySystem {
public:
    PropertyTable()
    {
        for (const auto subject :
             {fileRows(), documentRows(), musicRows(), videoRows(), pictureRows(), gpsRows(), messageRows()})
            rows_.insert(rows_.end(), subject.begin(), subject.end());
        byName_.reserve(rows_.size());
        for (const PropertyInfo& row : rows_)
            byName_.emplace(row.name, &row);
    }

    const PropertyInfo* byName(std::string_view canonicalName) const override
    {
        const auto found = byName_.find(canonicalName);
        return found != byName_.end() ? found->second : nullptr;
    }

    std::span<const PropertyInfo> all() const override { return rows_; }

private:
    std::vector<PropertyInfo> rows_;  // never changed after construction: byName_ points into it
    std::unordered_map<std::string_view, const PropertyInfo*> byName_;
};

}  // namespace

std::unique_ptr<PropertySystem> makePropertyTable()
{
    return std::make_unique<PropertyTable>();
}

}  // namespace kelvane
