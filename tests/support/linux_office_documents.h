// Documents of office programs, made from their parts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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

// An OpenDocument file with this body, and other parts.
inline std::string makeOdf(const std::string& body, const std::string& kind = "text",
                           std::vector<MadeEntry> others = {})
{
    std::vector<MadeEntry> entries{{"mimetype", "application/vnd.oasis.opendocument." + kind}};
    entries.push_back({"content.xml", "<office:document-content>\n <office:body>" + body +
                                          "</office:body>\n</office:document-content>"});
    entries.insert(entries.end(), others.begin(), others.end());
    return makeZip(entries, true);
}

// A PDF of one page for each text, lines parted by '\n'. The table of objects is left out: readers build it anew.
inline std::string makePdf(const std::vector<std::string>& pages, const std::string& facts = "",
                           const std::string& trailer = "")
{
    std::string kids, objects;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const std::string page = std::to_string(10 + 2 * i), content = std::to_string(11 + 2 * i);
        kids += page + " 0 R ";
        objects += page + " 0 obj <</Type/Page/Parent 2 0 R/MediaBox[0 0 600 800]/Resources<</Font<</F 3 0 R>>>>" +
                   "/Contents " + content + " 0 R>> endobj\n";
        std::string stream = "BT /F 12 Tf 14 TL 50 700 Td ";
        std::string_view rest = pages[i];
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            stream += "(" + std::string(rest.substr(0, end)) + ") Tj T* ";
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        stream += "ET";
        objects += content + " 0 obj <</Length " + std::to_string(stream.size()) + ">> stream\n" + stream +
                   "\nendstream endobj\n";
    }
    return "%PDF-1.4\n1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj\n2 0 obj <</Type/Pages/Count " +
           std::to_string(pages.size()) + "/Kids[" + kids + "]>> endobj\n" +
           "3 0 obj <</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding>> endobj\n" + objects +
           "4 0 obj <<" + facts + ">> endobj\ntrailer <</Root 1 0 R/Info 4 0 R" + trailer + ">>\n%%EOF\n";
}

}  // namespace kelvane::testing
