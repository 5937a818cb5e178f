// Translation modules as compiled catalogues, "kvtr_de.mo": the way of systems whose programs use GNU gettext.
#pragma once

#include <memory>

#include "platform/file_system.h"
#include "platform/language_choice.h"
#include "platform/text_modules.h"

namespace kelvane {

// The file system must outlive the modules. Entries of a catalogue are known by their context, the number of the text;
// one whose original is not today's English text is out of date and left out.
[[nodiscard]] std::unique_ptr<TextModules> makeMoTextModules(FileSystem& files, const LocaleVariables& variables);

}  // namespace kelvane
