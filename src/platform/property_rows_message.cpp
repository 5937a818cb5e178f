#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array messageList = {
    textsRow("System.Message.FromAddress", {property_set::message, 13}, u"From addresses"),
    textsRow("System.Message.FromName", {property_set::message, 14}, u"From"),
    textsRow("System.Message.ToAddress", {property_set::message, 16}, u"To addresses"),
    textsRow("System.Message.ToName", {property_set::message, 17}, u"To"),
    textsRow("System.Message.CcAddress", {property_set::message, 4}, u"Cc addresses"),
    textsRow("System.Message.CcName", {property_set::message, 5}, u"Cc"),
    textsRow("System.Message.AttachmentNames", {property_set::message, 21}, u"Attachments"),
    truthRow("System.Message.HasAttachments", {formatId("{9C1FCF74-2D97-41BA-B4AE-CB2E3661A6E4}"), 8},
             u"Has attachments"),
    dateRow("System.Message.DateSent", {property_set::message, 19}, u"Date sent"),
    dateRow("System.Message.DateReceived", {property_set::message, 20}, u"Date received"),
    textRow("System.Message.Store", {property_set::message, 15}, u"Store"),
};

}  // namespace

std::span<const PropertyInfo> messageRows() noexcept
{
    return messageList;
}

}  // namespace kelvane
