#include "text/document_readers.h"

#include <algorithm>
#include <array>
#include <memory>

#include "text/latest_files.h"

namespace kelvane {
namespace {

// What the readers of documents find: no document is opened for anything else.
constexpr auto carried = std::to_array<std::string_view>({
    "System.ApplicationName",
    "System.Category",
    "System.Comment",
    "System.Company",
    "System.ContentStatus",
    "System.ContentType",
    "System.Copyright",
    "System.Author",
    "System.Document.CharacterCount",
    "System.Document.Contributor",
    "System.Document.DateCreated",
    "System.Document.DatePrinted",
    "System.Document.DateSaved",
    "System.Document.HiddenSlideCount",
    "System.Document.LastAuthor",
    "System.Document.LineCount",
    "System.Document.Manager",
    "System.Document.MultimediaClipCount",
    "System.Document.NoteCount",
    "System.Document.PageCount",
    "System.Document.ParagraphCount",
    "System.Document.PresentationFormat",
    "System.Document.RevisionNumber",
    "System.Document.SlideCount",
    "System.Document.Template",
    "System.Document.TotalEditingTime",
    "System.Document.Version",
    "System.Document.WordCount",
    "System.Keywords",
    "System.Language",
    "System.Media.Publisher",
    "System.Media.SeriesName",
    "System.Message.AttachmentNames",
    "System.Message.CcAddress",
    "System.Message.CcName",
    "System.Message.DateReceived",
    "System.Message.DateSent",
    "System.Message.FromAddress",
    "System.Message.FromName",
    "System.Message.HasAttachments",
    "System.Message.ToAddress",
    "System.Message.ToName",
    "System.Subject",
    "System.Title",
});
constexpr std::string_view contents = "System.Search.Contents";

bool isCarried(std::string_view name)
{
    return name == contents || std::find(carried.begin(), carried.end(), name) != carried.end();
}

class DocumentReaders final : public PropertyReaders {
public:
    DocumentReaders(TextExtraction& extraction, PropertyReaders& next, const CancelFlag* cancel)
        : extraction_(extraction), next_(next), cancel_(cancel != nullptr ? *cancel : never_)
    {
    }

    RawValue read(const PropertyInfo& property, const ShellItem& item) override
    {
        if (isCarried(property.name) && item.info().kind == FileKind::regular && !extraction_.hopeless(item))
            if (RawValue value = fromDocument(property.name, item); !value.empty())
                return value;
        return next_.read(property, item);
    }

private:
    using Document = std::shared_ptr<const ExtractedDocument>;

    RawValue fromDocument(std::string_view name, const ShellItem& item)
    {
        const auto shared = latest_.of(item)->get([&]() -> std::optional<Document> {
            ExtractedDocument read = extraction_.extract(item, cancel_);
            if (read.outcome == TextOutcome::cancelled)
                return std::nullopt;
            return std::make_shared<const ExtractedDocument>(std::move(read));
        });
        if (!shared)
            return {};
        const ExtractedDocument& document = **shared;
        if (name == contents)
            return document.text.empty() ? RawValue{} : RawValue::text(document.text);
        const auto found = std::find_if(document.properties.begin(), document.properties.end(),
                                        [name](const DocumentProperty& property) { return property.name == name; });
        return found != document.properties.end() ? found->value : RawValue{};
    }

    TextExtraction& extraction_;
    PropertyReaders& next_;
    const CancelFlag never_;
    const CancelFlag& cancel_;
    LatestFiles<Document> latest_;
};

}  // namespace

std::unique_ptr<PropertyReaders> makeDocumentReaders(TextExtraction& extraction, PropertyReaders& next,
                                                     const CancelFlag* cancel)
{
    return std::make_unique<DocumentReaders>(extraction, next, cancel);
}

}  // namespace kelvane
