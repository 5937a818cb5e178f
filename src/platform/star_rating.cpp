#include "platform/star_rating.h"

#include <array>

namespace kelvane {

void addStars(std::int64_t stars, FactList& facts)
{
    constexpr std::array scale = {1, 25, 50, 75, 99};
    if (stars >= 1 && stars <= 5)
        facts.number("System.Rating", scale[static_cast<std::size_t>(stars) - 1]);
}

void addRating(std::int64_t rating, FactList& facts)
{
    if (rating >= 1 && rating <= 99)
        facts.number("System.Rating", rating);
}

}  // namespace kelvane
