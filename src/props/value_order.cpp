#include "props/value_order.h"

#include <cmath>

namespace kelvane {
namespace {

std::weak_ordering compareReals(double a, double b)
{
    if (a < b)
        return std::weak_ordering::less;
    if (a > b)
        return std::weak_ordering::greater;
    return std::isnan(a) <=> std::isnan(b);
}

bool withinTolerance(std::int64_t a, std::int64_t b, std::int64_t tolerance)
{
    const std::uint64_t apart = a > b ? static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b)
                                      : static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
    return tolerance >= 0 ? apart <= static_cast<std::uint64_t>(tolerance) : apart == 0;
}

}  // namespace

std::weak_ordering compareValues(const PropValue& a, const PropValue& b)
{
    if (a.missing() || b.missing())
        return b.missing() <=> a.missing();
    if (a.kind != b.kind)
        return a.kind <=> b.kind;
    switch (a.kind) {
    case PropKind::text:
        return a.text <=> b.text;
    case PropKind::real:
        return compareReals(a.real(), b.real());
    default:
        return a.number() <=> b.number();
    }
}

bool equalValues(const PropValue& a, const PropValue& b, std::int64_t dateTolerance)
{
    if (a.missing() || b.missing() || a.kind != b.kind)
        return false;
    switch (a.kind) {
    case PropKind::text:
        return a.text == b.text;
    case PropKind::real:
        return a.real() == b.real();
    case PropKind::date:
        return withinTolerance(a.number(), b.number(), dateTolerance);
    case PropKind::number:
        return a.number() == b.number();
    case PropKind::none:
        break;
    }
    return false;
}

}  // namespace kelvane
