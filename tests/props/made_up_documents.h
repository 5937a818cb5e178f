// Pairs of documents that are alike to any degree.
#pragma once

#include <algorithm>
#include <utility>

#include "props/made_up_texts.h"
#include "props/sim_doc_descriptor.h"

namespace kelvane::testing {

// The second is the first, more or less of it edited by somebody else; the lengths differ.
inline std::pair<Ref<SimDocDescriptor>, Ref<SimDocDescriptor>> someDocuments(MadeUpTexts& texts, MadeUpTexts& editor)
{
    const std::u16string text = texts.text(1600 + texts.below(4000));
    std::u16string other = editor.edited(text, texts.below(150));
    other.resize(std::max<std::size_t>(other.size() - texts.below(300), SimDocDescriptor::leastLength), u'.');
    return {SimDocDescriptor::make(text, text.size()), SimDocDescriptor::make(other, text.size() + texts.below(100))};
}

}  // namespace kelvane::testing
