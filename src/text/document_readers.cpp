#include "text/document_readers.h"

#include <algorithm>
#include <array>
#include <list>
#include <mutex>
#include <optional>

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

// Which state of which file was read.
struct Stamp {
    NativeString path;
    FileSize size;
    FileTime modified;
    friend bool operator==(const Stamp&, const Stamp&) = default;
};

// One file; whoever comes second waits until the first one has read it.
class Document {
public:
    explicit Document(Stamp stamp) : stamp_(std::move(stamp)) {}
    [[nodiscard]] const Stamp& stamp() const { return stamp_; }

    const ExtractedDocument& get(TextExtraction& extraction, const ShellItem& item)
    {
        const std::lock_guard lock(mutex_);
        if (!document_)
            document_ = extraction.extract(item, never_);
        return *document_;
    }

private:
    const Stamp stamp_;
    const CancelFlag never_;
    std::mutex mutex_;
    std::optional<ExtractedDocument> document_;
};

// The documents that were asked for last. Thread-safe.
class LatestDocuments {
public:
    std::shared_ptr<Document> of(const ShellItem& item)
    {
        Stamp stamp{item.fullName(), item.info().size, item.info().modified};
        const std::lock_guard lock(mutex_);
        const auto known = std::find_if(latest_.begin(), latest_.end(),
                                        [&stamp](const auto& document) { return document->stamp() == stamp; });
        if (known != latest_.end()) {
            latest_.splice(latest_.begin(), latest_, known);
        } else {
            latest_.push_front(std::make_shared<Document>(std::move(stamp)));
            if (latest_.size() > most)
                latest_.pop_back();
        }
        return latest_.front();
    }

private:
    // More than there are threads that read values; a sample of text and a few values each.
    static constexpr std::size_t most = 64;
    std::mutex mutex_;
    std::list<std::shared_ptr<Document>> latest_;
};

class DocumentReaders final : public PropertyReaders {
public:
    DocumentReaders(TextExtraction& extraction, PropertyReaders& next) : extraction_(extraction), next_(next) {}

    RawValue read(const PropertyInfo& property, const ShellItem& item) override
    {
        if (isCarried(property.name) && item.info().kind == FileKind::regular && !extraction_.hopeless(item))
            if (RawValue value = fromDocument(property.name, item); !value.empty())
                return value;
        return next_.read(property, item);
    }

private:
    RawValue fromDocument(std::string_view name, const ShellItem& item)
    {
        const auto kept = latest_.of(item);
        const ExtractedDocument& document = kept->get(extraction_, item);
        if (name == contents)
            return document.text.empty() ? RawValue{} : RawValue::text(document.text);
        const auto found = std::find_if(document.properties.begin(), document.properties.end(),
                                        [name](const DocumentProperty& property) { return property.name == name; });
        return found != document.properties.end() ? found->value : RawValue{};
    }

    TextExtraction& extraction_;
    PropertyReaders& next_;
    LatestDocuments latest_;
};

}  // namespace

std::unique_ptr<PropertyReaders> makeDocumentReaders(TextExtraction& extraction, PropertyReaders& next)
{
    return std::make_unique<DocumentReaders>(extraction, next);
}

}  // namespace kelvane
