#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array documentList = {
    textRow("System.Title", {property_set::summary, 2}, u"Title"),
    textRow("System.Subject", {property_set::summary, 3}, u"Subject"),
    textsRow("System.Author", {property_set::summary, 4}, u"Authors"),
    textsRow("System.Keywords", {property_set::summary, 5}, u"Tags"),
    textRow("System.Comment", {property_set::summary, 6}, u"Comments"),
    textsRow("System.Category", {property_set::documentSummary, 2}, u"Categories"),
    textRow("System.ApplicationName", {property_set::summary, 18}, u"Program name"),
    textRow("System.Company", {property_set::documentSummary, 15}, u"Company"),
    textRow("System.ContentType", {property_set::documentSummary, 26}, u"Content type"),
    textRow("System.ContentStatus", {property_set::documentSummary, 27}, u"Content status"),
    textRow("System.Language", {property_set::documentSummary, 28}, u"Language"),
    textRow("System.Copyright", {property_set::media, 11}, u"Copyright"),
    propertyRow("System.Rating", {property_set::media, 9}, VarType::uint32, u"Rating"),
    textRow("System.RatingText", {formatId("{90197CA7-FD8F-4E8C-9DA3-B57E1E609295}"), onlyMember}, u"Rating text"),
    textRow("System.ParentalRating", {property_set::media, 21}, u"Parental rating"),
    textsRow("System.ItemAuthors", {formatId("{D0A04F0A-462A-48A4-BB2F-3706E88DBD7D}"), onlyMember}, u"Item authors"),
    textsRow("System.ItemParticipants", {formatId("{D4D0AA16-9948-41A4-AA85-D97FF9646993}"), onlyMember},
             u"Item participants"),
    dateRow("System.ItemDate", {formatId("{F7DB74B4-4287-4103-AFBA-F1B13DCD75CF}"), onlyMember}, u"Date"),
    textRow("System.Project", {formatId("{39A7F922-477C-48DE-8BC8-B28441E342E3}"), onlyMember}, u"Project"),
    textRow("System.Identity", {formatId("{A26F4AFC-7346-4299-BE47-EB1AE613139F}"), onlyMember}, u"Identity"),
    choiceRow("System.Sensitivity", {formatId("{F8D3F6AC-4874-42CB-BE59-AB454B30716A}"), onlyMember}, VarType::uint16,
              u"Sensitivity"),
    textRow("System.Search.Contents", {property_set::storage, 19}, u"Contents"),
    textRow("System.Search.AutoSummary", {formatId("{560C36C0-503A-11CF-BAA1-00004C752A9A}"), 2}, u"Summary"),
    textRow("System.Document.Template", {property_set::summary, 7}, u"Template"),
    textRow("System.Document.LastAuthor", {property_set::summary, 8}, u"Last saved by"),
    textRow("System.Document.RevisionNumber", {property_set::summary, 9}, u"Revision number"),
    amountRow("System.Document.TotalEditingTime", {property_set::summary, 10}, VarType::uint64, u"Total editing time"),
    dateRow("System.Document.DatePrinted", {property_set::summary, 11}, u"Last printed"),
    dateRow("System.Document.DateCreated", {property_set::summary, 12}, u"Content created"),
    dateRow("System.Document.DateSaved", {property_set::summary, 13}, u"Date last saved"),
    amountRow("System.Document.PageCount", {property_set::summary, 14}, VarType::int32, u"Pages"),
    amountRow("System.Document.WordCount", {property_set::summary, 15}, VarType::int32, u"Word count"),
    amountRow("System.Document.CharacterCount", {property_set::summary, 16}, VarType::int32, u"Character count"),
    choiceRow("System.Document.Security", {property_set::summary, 19}, VarType::int32, u"Document security"),
    textRow("System.Document.PresentationFormat", {property_set::documentSummary, 3}, u"Presentation format"),
    amountRow("System.Document.ByteCount", {property_set::documentSummary, 4}, VarType::int32, u"Byte count"),
    amountRow("System.Document.LineCount", {property_set::documentSummary, 5}, VarType::int32, u"Line count"),
    amountRow("System.Document.ParagraphCount", {property_set::documentSummary, 6}, VarType::int32, u"Paragraph count"),
    amountRow("System.Document.SlideCount", {property_set::documentSummary, 7}, VarType::int32, u"Slides"),
    amountRow("System.Document.NoteCount", {property_set::documentSummary, 8}, VarType::int32, u"Notes"),
    amountRow("System.Document.HiddenSlideCount", {property_set::documentSummary, 9}, VarType::int32, u"Hidden slides"),
    amountRow("System.Document.MultimediaClipCount", {property_set::documentSummary, 10}, VarType::int32,
              u"Multimedia clips"),
    textRow("System.Document.Manager", {property_set::documentSummary, 14}, u"Manager"),
    textRow("System.Document.Version", {property_set::documentSummary, 29}, u"Document version"),
    textsRow("System.Document.Contributor", {formatId("{F334115E-DA1B-4509-9B3D-119504DC7ABB}"), onlyMember},
             u"Contributors"),
    textRow("System.Document.ClientID", {formatId("{276D7BB0-5B34-4FB0-AA4B-158ED12A1809}"), onlyMember}, u"Client ID"),
    textRow("System.Document.DocumentID", {formatId("{E08805C8-E395-40DF-80D2-54F0D6C43154}"), onlyMember},
            u"Document ID"),
    textRow("System.Document.Division", {formatId("{1E005EE6-BF27-428B-B01C-79676ACD2870}"), onlyMember}, u"Division"),
};

}  // namespace

std::span<const PropertyInfo> documentRows() noexcept
{
    return documentList;
}

}  // namespace kelvane
