// Which translation a person wants, as the settings of a Unix session tell it.
#pragma once

#include <string>
#include <vector>

namespace kelvane {

// The environment variables of the same names; empty when unset.
struct LocaleVariables {
    std::string language;    // LANGUAGE: a list, parted by ":"
    std::string lcAll;       // LC_ALL
    std::string lcMessages;  // LC_MESSAGES
    std::string lang;        // LANG
};

// The names to look for, the best first ("de_AT", "de"), in the order that the GNU gettext manual gives under "Setting
// the LANGUAGE Variable". The list ends where English or the locale "C" would come, since the program is English.
[[nodiscard]] std::vector<std::string> wantedLanguages(const LocaleVariables& variables);

}  // namespace kelvane
