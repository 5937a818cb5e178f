#include "cli/language.h"

#include "app/registry_access.h"
#include "app/translation.h"

namespace kelvane {

bool translationWanted(Platform& platform)
{
    CRegistryAccess settings(platform);
    settings.chooseLocation({});
    settings.setTranslation(TranslationState::active);
    settings.loadForReading();
    return settings.settings().useTranslation;
}

void chooseLanguage(Platform& platform)
{
    // Settings are read for a choice only that there is.
    const bool any = anyTranslation(platform.textModules(), platform.places());
    activateTranslation(platform.textModules(), platform.places(), any && translationWanted(platform));
}

}  // namespace kelvane
