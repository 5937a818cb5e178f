// What a comparison shows of one file.
#pragma once

#include <QString>
#include <vector>

#include "ui/preview/aligned_texts.h"
#include "ui/preview/file_facts.h"
#include "ui/preview/preview_content.h"

namespace kelvane {

struct ComparedFile {
    QString name;  // as it is titled
    QString folder;
    PreviewContent content;
    std::vector<Fact> facts;
};

struct ComparedFiles {
    std::vector<ComparedFile> files;
    AlignedTexts texts;  // of all; empty where not two of them have one
};

// On the tools' thread.
[[nodiscard]] ComparedFiles readCompared(const std::vector<Ref<const ShellItem>>& files, const std::string& columns,
                                         PreviewTools& tools);

}  // namespace kelvane
