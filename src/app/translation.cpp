#include "app/translation.h"

#include "base/text_table.h"

namespace kelvane {
namespace {

// Of a program that lies in <prefix>/bin, or where it was built.
Result<TextsByNumber> forPerson(TextModules& modules, const Places& places)
{
    const auto packaged =
        modules.loadForPerson(places.programFolder().parent_path() / "share" / "kelvane" / "translations");
    return packaged ? packaged : modules.loadForPerson(places.programFolder() / "translations");
}

bool install(const Result<TextsByNumber>& texts)
{
    return texts && installTranslation(*texts);
}

}  // namespace

bool anyTranslation(TextModules& modules, const Places& places)
{
    return modules.anyIn(places.programFolder()) || forPerson(modules, places).ok();
}

bool activateTranslation(TextModules& modules, const Places& places, bool wanted)
{
    releaseTranslation();
    return wanted && (install(modules.load(places.programFolder())) || install(forPerson(modules, places)));
}

}  // namespace kelvane
