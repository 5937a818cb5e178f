#include "props/prop_cache.h"

#include <bit>

namespace kelvane {

// A scan holds one context for every candidate.
static_assert(sizeof(ItemContext) <= 32);

PROPCACHE::~PROPCACHE()
{
    // Taken apart one by one: a long list must not end in a deep recursion of destructors.
    while (next)
        next = std::move(next->next);
}

double PROPCACHE::real() const
{
    return std::bit_cast<double>(value);
}

bool PROPCACHE::pending() const
{
    const auto* bits = std::get_if<std::uint64_t>(&raw.data);
    return raw.empty() && bits != nullptr && static_cast<std::uint32_t>(*bits) == pendingMark;
}

PROPCACHE* ItemContext::find(std::uint32_t identifier, PropKind kind) const
{
    for (PROPCACHE* node = head_.get(); node != nullptr; node = node->next.get())
        if (node->identifier == identifier && node->kind == kind)
            return node;
    return nullptr;
}

PROPCACHE& ItemContext::push(std::unique_ptr<PROPCACHE> node)
{
    node->next = std::move(head_);
    head_ = std::move(node);
    ++count_;
    return *head_;
}

}  // namespace kelvane
