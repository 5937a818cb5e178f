#include "props/property_catalogue.h"

#include "base/words.h"

namespace kelvane {
namespace {

PropRef reference(const PropertyInfo& info)
{
    return {&info, propertyIdentifier(info.key)};
}

// A key alone does not make a stock property: some of the program's rows share theirs with a property of the system,
// which is another thing with another type.
bool isStockRow(const PropertyInfo* info)
{
    for (const PropertyInfo& row : stockTable())
        if (&row == info)
            return true;
    return false;
}

}  // namespace

PropertyCatalogue::PropertyCatalogue(const PropertySystem& system)
    : system_(system),
      audioList_(parseList("System.Title,System.Music.AlbumTitle,System.ItemAuthors")),
      videoList_(parseList("System.Title,System.ItemAuthors,System.Video.Director")),
      bookList_(parseList("System.Title,System.ItemAuthors"))
{
}

PropRef PropertyCatalogue::byName(std::string_view canonicalName) const
{
    if (const PropertyInfo* info = system_.byName(canonicalName))
        return reference(*info);
    for (unsigned number = stockPropertyCount; number-- > 0;)
        if (stockTable()[number].name == canonicalName)
            return byNumber(number);
    return {};
}

PropRef PropertyCatalogue::byNumber(unsigned number) const
{
    return number < stockPropertyCount ? reference(stockTable()[number]) : PropRef{};
}

unsigned PropertyCatalogue::stockIndex(const PropRef& property) const
{
    if (!isStockRow(property.info))
        return 0;
    unsigned index = stockPropertyCount;
    while (index > 0 && propertyIdentifier(stockTable()[index - 1].key) != property.identifier)
        --index;
    return index;
}

std::span<const PropRef> PropertyCatalogue::components(const PropRef& property) const
{
    if (!property.has(property_flag::combined))
        return {};
    switch (stockIndex(property)) {
    case static_cast<unsigned>(StockProperty::audioList) + 1:
        return audioList_;
    case static_cast<unsigned>(StockProperty::videoList) + 1:
        return videoList_;
    case static_cast<unsigned>(StockProperty::bookList) + 1:
        return bookList_;
    default:
        return {};
    }
}

std::vector<std::string> PropertyCatalogue::names() const
{
    std::vector<std::string> all;
    for (const PropertyInfo& info : system_.all())
        all.emplace_back(info.name);
    for (const PropertyInfo& info : stockTable())
        all.emplace_back(info.name);
    return all;
}

std::vector<PropRef> PropertyCatalogue::parseList(std::string_view names, std::vector<std::string>* unknown) const
{
    std::vector<PropRef> properties;
    for (std::string& name : splitWords(names, ',')) {
        if (const PropRef property = byName(name))
            properties.push_back(property);
        else if (unknown != nullptr)
            unknown->push_back(std::move(name));
    }
    return properties;
}

}  // namespace kelvane
