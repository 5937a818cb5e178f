#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array gpsList = {
    angleRow("System.GPS.Latitude", {formatId("{8727CFFF-4868-4EC6-AD5B-81B98521D1AB}"), onlyMember}, u"Latitude"),
    textRow("System.GPS.LatitudeRef", {formatId("{029C0252-5B86-46C7-ACA0-2769FFC8E3D4}"), onlyMember},
            u"Latitude reference"),
    realRow("System.GPS.LatitudeDecimal", {formatId("{0F55CDE2-4F49-450D-92C1-DCD16301B1B7}"), onlyMember},
            u"Latitude in degrees"),
    angleRow("System.GPS.Longitude", {formatId("{C4C4DBB2-B593-466B-BBDA-D03D27D5E43A}"), onlyMember}, u"Longitude"),
    textRow("System.GPS.LongitudeRef", {formatId("{33DCF22B-28D5-464C-8035-1EE9EFD25278}"), onlyMember},
            u"Longitude reference"),
    realRow("System.GPS.LongitudeDecimal", {formatId("{4679C1B5-844D-4590-BAF5-F322231F1B81}"), onlyMember},
            u"Longitude in degrees"),
    realRow("System.GPS.Altitude", {formatId("{827EDB4F-5B73-44A7-891D-FDFFABEA35CA}"), onlyMember}, u"Altitude"),
    choiceRow("System.GPS.AltitudeRef", {formatId("{46AC629D-75EA-4515-867F-6DC4321C5844}"), onlyMember},
              VarType::uint8, u"Altitude reference"),
    dateRow("System.GPS.Date", {formatId("{3602C812-0F3B-45F0-85AD-603468D69423}"), onlyMember}, u"GPS date"),
    angleRow("System.GPS.DestLatitude", {formatId("{9D1D7CC5-5C39-451C-86B3-928E2D18CC47}"), onlyMember},
             u"Destination latitude"),
    textRow("System.GPS.DestLatitudeRef", {formatId("{CEA820B9-CE61-4885-A128-005D9087C192}"), onlyMember},
            u"Destination latitude reference"),
    angleRow("System.GPS.DestLongitude", {formatId("{47A96261-CB4C-4807-8AD3-40B9D9DBC6BC}"), onlyMember},
             u"Destination longitude"),
    textRow("System.GPS.DestLongitudeRef", {formatId("{182C1EA6-7C1C-4083-AB4B-AC6C9F4ED128}"), onlyMember},
            u"Destination longitude reference"),
    realRow("System.GPS.DOP", {formatId("{0CF8FB02-1837-42F1-A697-A7017AA289B9}"), onlyMember},
            u"Dilution of precision"),
    realRow("System.GPS.Speed", {formatId("{DA5D0862-6E76-4E1B-BABD-70021BD25494}"), onlyMember}, u"GPS speed"),
    textRow("System.GPS.SpeedRef", {formatId("{ECF7F4C9-544F-4D6D-9D98-8AD79ADAF453}"), onlyMember},
            u"GPS speed reference"),
    realRow("System.GPS.Track", {formatId("{76C09943-7C33-49E3-9E7E-CDBA872CFADA}"), onlyMember}, u"GPS track"),
    textRow("System.GPS.TrackRef", {formatId("{35DBE6FE-44C3-4400-AAAE-D2C799C407E8}"), onlyMember},
            u"GPS track reference"),
    realRow("System.GPS.ImgDirection", {formatId("{16473C91-D017-4ED9-BA4D-B6BAA55DBCF8}"), onlyMember},
            u"Image direction"),
    textRow("System.GPS.ImgDirectionRef", {formatId("{A4AAA5B7-1AD0-445F-811A-0F8F6E67F6B5}"), onlyMember},
            u"Image direction reference"),
    textRow("System.GPS.MapDatum", {formatId("{2CA2DAE6-EDDC-407D-BEF1-773942ABFA95}"), onlyMember}, u"Map datum"),
    textRow("System.GPS.Satellites", {formatId("{467EE575-1F25-4557-AD4E-B8B58B0D9C15}"), onlyMember}, u"Satellites"),
    textRow("System.GPS.Status", {formatId("{125491F4-818F-46B2-91B5-D537753617B2}"), onlyMember}, u"GPS status"),
    textRow("System.GPS.MeasureMode", {formatId("{A015ED5D-AAEA-4D58-8A86-3C586920EA0B}"), onlyMember},
            u"Measure mode"),
    textRow("System.GPS.ProcessingMethod", {formatId("{59D49E61-840F-4AA9-A939-E2099B7F6399}"), onlyMember},
            u"Processing method"),
    textRow("System.GPS.AreaInformation", {formatId("{972E333E-AC7E-49F1-8ADF-A70D07A9BCAB}"), onlyMember},
            u"GPS area"),
};

}  // namespace

std::span<const PropertyInfo> gpsRows() noexcept
{
    return gpsList;
}

}  // namespace kelvane
