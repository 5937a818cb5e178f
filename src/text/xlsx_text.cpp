#include "text/xlsx_text.h"

#include <algorithm>

#include "text/property_values.h"

namespace kelvane {
namespace {

constexpr std::string_view workbookName = "xl/workbook.xml";
constexpr std::string_view relationsName = "xl/_rels/workbook.xml.rels";
constexpr std::string_view sharedName = "xl/sharedStrings.xml";
constexpr std::string_view sheetFolder = "xl/worksheets/";

// Strings that cells name by number. Readings printed above characters are left out.
class SharedStrings final : public MarkupHandler {
public:
    std::vector<std::string> strings;

private:
    bool leavesOut(std::string_view name, XmlAttributes) override { return name == "rPh" || name == "phoneticPr"; }
    void begins(std::string_view name, XmlAttributes) override
    {
        if (name == "si")
            strings.emplace_back();
        inText_ = name == "t";
    }
    void ends(std::string_view) override { inText_ = false; }
    void text(std::string_view characters) override
    {
        if (inText_ && !strings.empty())
            strings.back() += characters;
    }

    bool inText_ = false;
};

// Values as they are written: numbers and dates without their formats, results of formulas without the formulas.
class SheetHandler final : public TextHandler {
public:
    SheetHandler(DocumentSink& sink, const std::vector<std::string>& strings) : TextHandler(sink), strings_(strings) {}

private:
    bool leavesOut(std::string_view name, XmlAttributes) override
    {
        return name == "f" || name == "rPh" || name == "headerFooter" || name == "extLst";
    }

    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (name == "c") {
            type_ = attributeOf(attributes, "t");
            value_.clear();
        }
        inValue_ = name == "v" || name == "t";
    }

    void ends(std::string_view name) override
    {
        inValue_ = false;
        if (name == "c")
            cell();
        else if (name == "row")
            sink_.lineBreak();
    }

    void text(std::string_view characters) override
    {
        if (inValue_)
            value_ += characters;
    }

    void cell()
    {
        if (type_ == "s") {
            const auto index = wholeNumber(value_);
            sink_.text(index && *index < strings_.size() ? std::string_view(strings_[*index]) : std::string_view());
        } else if (type_ == "b") {
            sink_.text(value_ == "0" ? std::string_view("FALSE") : std::string_view("TRUE"));
        } else {
            sink_.text(std::string_view(value_));
        }
        sink_.gap();
    }

    const std::vector<std::string>& strings_;
    std::string type_, value_;
    bool inValue_ = false;
};

// In the order of the tabs, by what stands for their parts.
class WorkbookHandler final : public MarkupHandler {
public:
    std::vector<std::string> relations;

private:
    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (name == "sheet")
            relations.emplace_back(attributeOf(attributes, "id"));
    }
    void ends(std::string_view) override {}
    void text(std::string_view) override {}
};

class RelationsHandler final : public MarkupHandler {
public:
    std::map<std::string, std::string, std::less<>> targets;

private:
    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (name == "Relationship")
            targets.emplace(attributeOf(attributes, "Id"), attributeOf(attributes, "Target"));
    }
    void ends(std::string_view) override {}
    void text(std::string_view) override {}
};

bool parseNamed(const PackageParts& parts, std::string_view name, const DocumentServices& services,
                MarkupHandler& handler)
{
    const auto part = parts.find(name);
    return part == parts.end() || parsePart(part->second, services, handler);
}

using Part = PackageParts::const_iterator;

// The sheets as the workbook lists them, and behind them those that it does not name, by number.
std::vector<Part> sheetsInOrder(const PackageParts& parts, const DocumentServices& services)
{
    WorkbookHandler workbook;
    RelationsHandler relations;
    (void)parseNamed(parts, workbookName, services, workbook);
    (void)parseNamed(parts, relationsName, services, relations);
    std::map<std::string, std::size_t, std::less<>> ranks;
    for (const std::string& relation : workbook.relations)
        if (const auto target = relations.targets.find(relation); target != relations.targets.end())
            ranks.emplace(resolvePart("xl", target->second), ranks.size());
    std::vector<Part> sheets;
    for (auto part = parts.begin(); part != parts.end(); ++part)
        if (part->first.starts_with(sheetFolder))
            sheets.push_back(part);
    std::stable_sort(sheets.begin(), sheets.end(), [&ranks](Part a, Part b) {
        const auto rank = [&ranks](Part part) {
            const auto found = ranks.find(part->first);
            return std::pair(found != ranks.end() ? found->second : ranks.size(), numberIn(part->first));
        };
        return rank(a) < rank(b);
    });
    return sheets;
}

}  // namespace

bool isXlsxMain(std::string_view name)
{
    return name == workbookName;
}

bool isXlsxPart(std::string_view name)
{
    return isXlsxMain(name) || name == relationsName || name == sharedName ||
           (name.starts_with(sheetFolder) && name.ends_with(".xml"));
}

bool readXlsxText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink)
{
    SharedStrings shared;
    bool whole = parseNamed(parts, sharedName, services, shared);
    for (const Part sheet : sheetsInOrder(parts, services)) {
        SheetHandler handler(sink, shared.strings);
        whole = parsePart(sheet->second, services, handler) && whole;
        sink.lineBreak();
    }
    return whole;
}

}  // namespace kelvane
