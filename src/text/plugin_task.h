// Questions to content plug-ins as bytes between the program and a worker. Neither end trusts the other's.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "text/plugin_access.h"
#include "text/worker_task.h"

namespace kelvane {

enum class PluginAsk : std::uint32_t { describe = 1, value = 2, fullText = 3 };

// Begins with WorkerTask::readPluginFields.
struct PluginRequest {
    PluginAsk ask = PluginAsk::describe;
    PluginQuestion question;
    std::uint32_t characters = 0;  // of a full text
};

[[nodiscard]] std::vector<std::byte> encodePluginRequest(const PluginRequest& request);
[[nodiscard]] std::optional<PluginRequest> decodePluginRequest(std::span<const std::byte> bytes);

// In the worker. A malformed request gives no bytes, which no decoder takes for an answer.
[[nodiscard]] std::vector<std::byte> answerPluginRequest(std::span<const std::byte> request, PluginAccess& plugins);

// In the program; `invalid` for malformed bytes.
[[nodiscard]] Result<PluginDescription> decodePluginDescription(std::span<const std::byte> answer);
[[nodiscard]] Result<RawValue> decodePluginValue(std::span<const std::byte> answer);
[[nodiscard]] ExtractedDocument decodePluginText(std::span<const std::byte> answer);

}  // namespace kelvane
