#include "app/translation.h"

#include "base/text_table.h"

namespace kelvane {
namespace {

// Of a program that lies in <prefix>/bin.
std::filesystem::path packagedModules(const Places& places)
{
    return places.programFolder().parent_path() / "share" / "kelvane" / "translations";
}

bool install(const Result<TextsByNumber>& texts)
{
    return texts && installTranslation(*texts);
}

}  // namespace

bool anyTranslation(TextModules& modules, const Places& places)
{
    return modules.anyIn(places.programFolder()) || modules.loadForPerson(packagedModules(places));
}

bool activateTranslation(TextModules& modules, const Places& places, bool wanted)
{
    releaseTranslation();
    return wanted &&
           (install(modules.load(places.programFolder())) || install(modules.loadForPerson(packagedModules(places))));
}

}  // namespace kelvane
