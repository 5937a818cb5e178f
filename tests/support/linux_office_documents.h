// Documents of office programs, made from their parts.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/adapters.h"
#include "support/document_world.h"
#include "support/linux_archive_maker.h"

namespace kelvane::testing {

// A world that reads packages.
inline DocumentWorld officeWorld()
{
    DocumentWorld world;
    world.xml = makePugixmlParsing();
    world.packages = makeLibarchivePackages();
    return world;
}

// A docx with this body, and other parts.
inline std::string makeDocx(std::string_view body, std::vector<MadeEntry> others = {})
{
    std::vector<MadeEntry> entries{{"[Content_Types].xml", "<Types/>"}};
    entries.push_back({"word/document.xml", "<?xml version='1.0' encoding='UTF-8'?><w:document><w:body>" +
                                                std::string(body) + "</w:body></w:document>"});
    entries.insert(entries.end(), others.begin(), others.end());
    return makeZip(entries);
}

// Paragraphs of plain runs.
inline std::string docxParagraphs(std::string_view lines)
{
    std::string body;
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        body += "<w:p><w:r><w:t>" + std::string(lines.substr(0, end)) + "</w:t></w:r></w:p>";
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    return body;
}

}  // namespace kelvane::testing
