// What was taken out of one document.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/named_value.h"

namespace kelvane {

using DocumentProperty = NamedValue;

// Why there is no text, or not all of it. In the order in which a summary names them.
enum class TextOutcome : std::uint8_t {
    extracted,
    unknownFormat,  // nothing reads files of this kind
    excluded,       // by the settings
    tooLarge,       // beyond the settings' limit
    unreadable,     // the file could not be opened or read
    encrypted,      // needs a password
    damaged,        // not what its kind promises
    toolMissing,    // a program or library that would read it is not installed
    timedOut,       // took longer than the settings allow
    tooMuchMemory,  // wanted more than it is given
    crashed,        // what reads it broke down on it
    cancelled,
};

struct ExtractedDocument {
    TextOutcome outcome = TextOutcome::unknownFormat;
    std::u16string text;  // at most as many characters as the options ask for
    bool cut = false;     // there would have been more
    // Whether the file is its text and nothing else: plain text, source code, subtitles. Of anything else (markup,
    // packages) the size of the file says nothing about the text.
    bool plain = false;
    // What the whole text would weigh as a plain UTF-8 file, in bytes, as far as it was gone through (see
    // ExtractionOptions::weighedCharacters).
    std::uint64_t weight = 0;
    std::vector<DocumentProperty> properties;
    std::string missingTool;  // of toolMissing: the program or library to install
    std::string detail;       // for a person who asks why, in UTF-8; may be empty
};

}  // namespace kelvane
