// What content plug-ins are asked, wherever they run: in this process or in a worker.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "base/result.h"
#include "platform/raw_value.h"
#include "text/extracted_document.h"

namespace kelvane {

// One field that a plug-in offers.
struct PluginField {
    std::uint32_t number = 0;       // as the plug-in counts
    std::string name;               // in UTF-8, as the plug-in gives it
    VarType type = VarType::empty;  // of its values; empty for full texts
    [[nodiscard]] bool isFullText() const { return type == VarType::empty; }
    friend bool operator==(const PluginField&, const PluginField&) = default;
};

struct PluginDescription {
    std::string detect;  // its own detect string; may be empty
    std::vector<PluginField> fields;
};

// A field of one plug-in for one file. Both paths are absolute.
struct PluginQuestion {
    std::filesystem::path path;  // of the library
    std::filesystem::path file;
    std::uint32_t field = 0;
};

// Thread-safe. Plug-ins are loaded when they are first asked, and stay loaded.
class PluginAccess {
public:
    virtual ~PluginAccess() = default;
    // An error where the library is missing, is none, or lacks the functions of a plug-in.
    [[nodiscard]] virtual Result<PluginDescription> describe(const std::filesystem::path& library,
                                                             const CancelFlag& cancel) = 0;
    // Empty where the file has no such value. An error when the plug-in broke down; it may be asked again.
    [[nodiscard]] virtual Result<RawValue> value(const PluginQuestion& question, const CancelFlag& cancel) = 0;
    // A full text, at most so many characters. unknownFormat where the plug-in has none for this file.
    [[nodiscard]] virtual ExtractedDocument fullText(const PluginQuestion& question, std::uint32_t characters,
                                                     const CancelFlag& cancel) = 0;
};

}  // namespace kelvane
