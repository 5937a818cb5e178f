// Texts of documents that none of the formats here reads.
#pragma once

#include "base/cancel.h"
#include "platform/shell_item.h"
#include "text/extracted_document.h"

namespace kelvane {

// Asked when a file has a name and bytes of no known format. Thread-safe.
class OtherTexts {
public:
    virtual ~OtherTexts() = default;
    // A look at the name only; false: nothing will come of this file.
    [[nodiscard]] virtual bool mayRead(const ShellItem& item) const = 0;
    // The text up to the sample, as an extraction by a format gives it; unknownFormat where there is none.
    [[nodiscard]] virtual ExtractedDocument extract(const ShellItem& item, const CancelFlag& cancel) = 0;
};

}  // namespace kelvane
