// What the program asks of a worker, and what comes back, as bytes. Both ends are of one version, but neither trusts
// the other's bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/worker_processes.h"
#include "text/extracted_document.h"
#include "text/extraction_options.h"

namespace kelvane {

// The first number of a request.
enum class WorkerTask : std::uint32_t { extractDocument = 1, readPluginFields = 2 };

struct ExtractionRequest {
    std::string fileName;  // the last part, in UTF-8 as far as it is text: formats are known by it
    std::uint32_t textSample = 0;
    std::uint64_t largestStream = 0;
};

// What a request asks for; nothing where it is too short to say. The number need not be one of the known tasks.
[[nodiscard]] std::optional<WorkerTask> taskOf(std::span<const std::byte> request);

[[nodiscard]] std::vector<std::byte> encodeRequest(const ExtractionRequest& request);
[[nodiscard]] std::optional<ExtractionRequest> decodeExtractionRequest(std::span<const std::byte> bytes);

// Values that carry objects stay behind: they mean nothing in another process.
[[nodiscard]] std::vector<std::byte> encodeDocument(const ExtractedDocument& document);
// Nothing for malformed bytes.
[[nodiscard]] std::optional<ExtractedDocument> decodeDocument(std::span<const std::byte> bytes);

// What it means for a document that its worker ended so; `answered` with nonsense counts as broken down.
[[nodiscard]] TextOutcome outcomeOf(WorkerEnd end);

}  // namespace kelvane
