#include "ui/preview/compared_file.h"

#include <algorithm>

#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/preview/preview_reader.h"

namespace kelvane {

ComparedFiles readCompared(const std::vector<Ref<const ShellItem>>& files, const std::string& columns,
                           PreviewTools& tools)
{
    ComparedFiles all;
    std::vector<std::u16string> texts;
    for (const auto& file : files) {
        const auto path = file->path();
        all.files.push_back({toQt(displayFromNative(path.filename().native())),
                             toQt(displayFromNative(path.parent_path().native())), readPreview(file, tools),
                             readFacts(file, columns, tools)});
        texts.push_back(all.files.back().content.text);
    }
    const auto withText = std::count_if(all.files.begin(), all.files.end(), [](const ComparedFile& file) {
        return file.content.kind == PreviewContent::Kind::text;
    });
    if (withText > 1)
        all.texts = alignTexts(texts);
    return all;
}

}  // namespace kelvane
