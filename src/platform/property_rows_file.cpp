#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array fileList = {
    ofRecord(amountRow("System.Size", {property_set::storage, 12}, VarType::uint64, u"Size")),
    ofRecord(dateRow("System.DateModified", {property_set::storage, 14}, u"Date modified")),
    ofRecord(dateRow("System.DateCreated", {property_set::storage, 15}, u"Date created")),
    ofRecord(dateRow("System.DateAccessed", {property_set::storage, 16}, u"Date accessed")),
    ofRecord(propertyRow("System.FileAttributes", {property_set::storage, 13}, VarType::uint32, u"Attributes")),
    ofRecord(textRow("System.FileName", {formatId("{41CF5AE0-F75A-4806-BD87-59C7D9248EB9}"), onlyMember}, u"Filename")),
    ofRecord(textRow("System.FileExtension", {formatId("{E4F10A3C-49E6-405D-8288-A23BD4EEAA6C}"), onlyMember},
                     u"File extension")),
    ofRecord(
        textRow("System.ItemName", {formatId("{6B8DA074-3B5C-43BC-886F-0A2CDCE00B6F}"), onlyMember}, u"Item name")),
    ofRecord(textRow("System.ItemNameDisplay", {property_set::storage, 10}, u"Name")),
    ofRecord(textRow("System.ItemNameDisplayWithoutExtension", {property_set::storage, 24}, u"Name without extension")),
    ofRecord(textRow("System.ItemPathDisplay", {property_set::message, 7}, u"Path")),
    ofRecord(textRow("System.ItemFolderPathDisplay", {property_set::message, 6}, u"Folder path")),
    ofRecord(textRow("System.ItemFolderNameDisplay", {property_set::storage, 2}, u"Folder name")),
    ofRecord(textRow("System.ItemUrl", {formatId("{49691C90-7E17-101A-A91C-08002B2ECDA9}"), 9}, u"Item URL")),
    ofRecord(textRow("System.ParsingName", {property_set::shellDetails, 24}, u"Parsing name")),
    ofRecord(textRow("System.ParsingPath", {property_set::shellDetails, 30}, u"Parsing path")),
    ofRecord(textRow("System.ItemType", {property_set::shellDetails, 11}, u"Item type")),
    ofRecord(textRow("System.ItemTypeText", {property_set::storage, 4}, u"Type")),
    ofRecord(textsRow("System.Kind", {formatId("{1E3EE840-BC2B-476C-8237-2ACD1A839B22}"), 3}, u"Kind")),
    ofRecord(
        textRow("System.KindText", {formatId("{F04BEF95-C585-4197-A2B7-DF46FDC9EE6D}"), onlyMember}, u"Kind text")),
    amountRow("System.FileAllocationSize", {property_set::storage, 18}, VarType::uint64, u"Allocated size"),
    textRow("System.FileOwner", {formatId("{9B174B34-40FF-11D2-A27E-00C04FC30871}"), 4}, u"Owner"),
    textRow("System.ComputerName", {property_set::shellDetails, 5}, u"Computer"),
    textRow("System.MIMEType", {formatId("{0B63E350-9CCC-11D0-BCDB-00805FCCCE04}"), 5}, u"MIME type"),
    choiceRow("System.PerceivedType", {property_set::shellDetails, 9}, VarType::int32, u"Perceived type"),
    truthRow("System.IsShared", {formatId("{EF884C5B-2BFE-41BB-AAE5-76EEDF4F9902}"), onlyMember}, u"Shared"),
    truthRow("System.IsEncrypted", {formatId("{90E5E14E-648B-4826-B2AA-ACAF790E3513}"), 10}, u"Encrypted"),
    textRow("System.FileDescription", {property_set::version, 3}, u"File description"),
    textRow("System.FileVersion", {property_set::version, 4}, u"File version"),
    textRow("System.InternalName", {property_set::version, 5}, u"Internal name"),
    textRow("System.OriginalFileName", {property_set::version, 6}, u"Original filename"),
    textRow("System.Software.ProductName", {property_set::version, 7}, u"Product name"),
    textRow("System.Software.ProductVersion", {property_set::version, 8}, u"Product version"),
    textRow("System.Trademarks", {property_set::version, 9}, u"Trademarks"),
    textRow("System.Link.TargetParsingPath", {formatId("{B9B4B3FC-2B51-4A42-B5D8-324146AFCF25}"), 2}, u"Link target"),
    textRow("System.Link.Arguments", {formatId("{436F2667-14E2-4FEB-B30A-146C53B5B674}"), onlyMember},
            u"Link arguments"),
    dateRow("System.DateAcquired", {formatId("{2CBAA8F5-D81F-47CA-B17A-F8D822300131}"), onlyMember}, u"Date acquired"),
    dateRow("System.DateArchived", {formatId("{43F8D7B7-A444-4F87-9383-52271C9B915C}"), onlyMember}, u"Date archived"),
    dateRow("System.DateCompleted", {formatId("{72FAB781-ACDA-43E5-B155-B2434F85E678}"), onlyMember},
            u"Date completed"),
    dateRow("System.DateImported", {property_set::exif, 18258}, u"Date imported"),
};

}  // namespace

std::span<const PropertyInfo> fileRows() noexcept
{
    return fileList;
}

}  // namespace kelvane
