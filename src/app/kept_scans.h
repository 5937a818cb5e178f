// The scans that a person keeps: those saved by name, and the history of those that ran.
#pragma once

#include <cstddef>
#include <string_view>

#include "app/registry_access.h"
#include "app/settings.h"
#include "platform/text_folding.h"

namespace kelvane {

enum class KeptScanResult {
    done,
    noName,     // empty, or nothing but blanks
    nameTaken,  // by another scan
    notFound,
    tooLong,  // a definition that no settings can hold
};

// Of Settings::savedScans, which are in the order in which they were first saved. Names are held against one another
// without case, and blanks around them do not count. What is refused changes nothing. Nothing is written but where it
// is said: the settings are saved as a whole.

// Null for an unknown name. Valid until the list changes.
[[nodiscard]] const KeptScan* findSavedScan(const Settings& settings, std::u16string_view name,
                                            const TextFolding& folding);
// Under the definition's own name, in the place of a scan that has it already.
[[nodiscard]] KeptScanResult addSavedScan(Settings& settings, CScanNode definition, const TextFolding& folding);
// To another case of the same name as well.
[[nodiscard]] KeptScanResult renameSavedScan(Settings& settings, std::u16string_view from, std::u16string_view to,
                                             const TextFolding& folding);
[[nodiscard]] KeptScanResult removeSavedScan(Settings& settings, std::u16string_view name, const TextFolding& folding);

// A clean-up made the results of this saved scan out of date: its entry goes, and the list is written at once where
// the settings are kept at all. An unknown name is no failure.
[[nodiscard]] SettingsCode dropCleanedScan(CRegistryAccess& access, std::u16string_view name);

// Of Settings::scanHistory: the latest first, mostHistory of them at most. Two entries are the same when their
// definitions are, whatever their names.

// Puts a scan in front; an older entry of the same definition goes. A definition that no settings can hold is not
// remembered.
void rememberScan(Settings& settings, CScanNode definition, FileTime when);
// A clean-up made its results out of date.
void markStale(Settings& settings, const CScanNode& definition);
// False when there is no such entry, counted from 0.
[[nodiscard]] bool removeFromHistory(Settings& settings, std::size_t index);
void clearHistory(Settings& settings);

}  // namespace kelvane
