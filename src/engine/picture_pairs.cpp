#include "engine/picture_pairs.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "engine/alike_previews.h"
#include "engine/neighbours.h"

namespace kelvane {
namespace {

bool sameSize(const Picture& a, const Picture& b)
{
    return a.described && b.described && a.described->sameSize(*b.described);
}

bool looksAgree(const Picture& a, const Picture& b)
{
    return secondLook(a.described->signature(), b.described->signature()).agrees;
}

using Later = std::vector<std::vector<std::uint32_t>>;  // of each position those behind it, in ascending order

// Where more are alike than are found ahead, chains go on through the next one in line. Unfinished when cancelled.
Later laterOf(const OrderedPictures& pictures, const AlikePreviews& alikes, std::span<const std::uint32_t> numbers,
              const CancelFlag& cancel)
{
    std::vector<std::uint32_t> positions(alikes.size(), Neighbours::none);
    for (std::uint32_t i = 0; i < numbers.size(); ++i)
        positions[numbers[i]] = i;
    Later later(pictures.size());
    for (std::uint32_t i = 0; i < pictures.size() && !cancel.cancelled(); ++i) {
        for (const AlikePreview& alike : alikes.of(numbers[i]))
            if (const std::uint32_t other = positions[alike.number]; other != Neighbours::none)
                later[std::min(i, other)].push_back(std::max(i, other));
        if (i + 1 < pictures.size() && sameSize(pictures[i], pictures[i + 1]) &&
            looksAgree(pictures[i], pictures[i + 1]))
            later[i].push_back(i + 1);
    }
    for (auto& ofOne : later) {
        if (cancel.cancelled())
            break;
        std::sort(ofOne.begin(), ofOne.end());
        ofOne.erase(std::unique(ofOne.begin(), ofOne.end()), ofOne.end());
        ofOne.shrink_to_fit();
    }
    return later;
}

}  // namespace

std::vector<const PreviewSignature*> signaturesOf(const OrderedPictures& pictures)
{
    std::vector<const PreviewSignature*> all;
    all.reserve(pictures.size());
    for (const Picture& picture : pictures)
        all.push_back(picture.described ? &picture.described->signature() : nullptr);
    return all;
}

LaterPicture laterAlikes(const OrderedPictures& pictures, unsigned threads, const CancelFlag& cancel)
{
    const auto alikes = AlikePreviews::find(signaturesOf(pictures), threads, cancel);
    if (!alikes)
        return {};
    std::vector<std::uint32_t> numbers(pictures.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    return laterAlikes(pictures, *alikes, numbers, cancel);
}

LaterPicture laterAlikes(const OrderedPictures& pictures, const AlikePreviews& alikes,
                         std::span<const std::uint32_t> numbers, const CancelFlag& cancel)
{
    auto later = std::make_shared<const Later>(laterOf(pictures, alikes, numbers, cancel));
    if (cancel.cancelled())
        return {};
    return [later = std::move(later)](std::uint32_t reference, std::uint32_t after) {
        const auto& ofOne = (*later)[reference];
        const auto next = std::upper_bound(ofOne.begin(), ofOne.end(), after);
        return next != ofOne.end() ? *next : Neighbours::none;
    };
}

LaterPicture laterOfSameSize(std::shared_ptr<const OrderedPictures> pictures, bool secondLook, const CancelFlag& cancel)
{
    return [pictures = std::move(pictures), secondLook, &cancel](std::uint32_t reference, std::uint32_t after) {
        const OrderedPictures& all = *pictures;
        for (std::uint32_t i = after + 1; i < all.size() && !cancel.cancelled(); ++i)
            if (sameSize(all[reference], all[i]) && (!secondLook || looksAgree(all[reference], all[i])))
                return i;
        return Neighbours::none;
    };
}

}  // namespace kelvane
