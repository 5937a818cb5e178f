// Texts of documents as a test wants them, without processes.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <utility>

#include "support/paths.h"
#include "text/text_extraction.h"

namespace kelvane::testing {

// Answers from a table of full paths; files that are not in it have no known format, and ".none" is hopeless.
class FakeExtraction final : public TextExtraction {
public:
    ExtractedDocument extract(const ShellItem& item, const CancelFlag& cancel) override
    {
        ++extractions;
        const std::string path = posix(item.fullName());
        if (onExtract)
            onExtract(path);
        while (blocked && !cancel.cancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (cancel.cancelled())
            return ended(TextOutcome::cancelled, {});
        const auto found = documents_.find(path);
        return found != documents_.end() ? found->second : ExtractedDocument{};
    }
    bool hopeless(const ShellItem& item) const override { return posix(item.fullName()).ends_with(".none"); }
    std::vector<std::string> missingTools() const override { return {}; }
    const ExtractionOptions& options() const override { return settings; }

    // As a file that is its text and nothing else.
    void setPlain(const std::string& path, std::u16string text)
    {
        setRich(path, std::move(text));
        documents_[path].plain = true;
    }
    // As the text of a format that wraps it.
    void setRich(const std::string& path, std::u16string text)
    {
        ExtractedDocument document = ended(TextOutcome::extracted, {});
        document.weight = text.size();
        document.text = std::move(text);
        documents_[path] = std::move(document);
    }
    void fail(const std::string& path, TextOutcome outcome, std::string detail = {})
    {
        documents_[path] = ended(outcome, std::move(detail));
    }

    ExtractionOptions settings;
    std::atomic<int> extractions{0};
    std::atomic<bool> blocked{false};  // until cancelled
    std::function<void(const std::string& path)> onExtract;

private:
    static ExtractedDocument ended(TextOutcome outcome, std::string detail)
    {
        ExtractedDocument document;
        document.outcome = outcome;
        document.detail = std::move(detail);
        return document;
    }

    std::map<std::string, ExtractedDocument> documents_;
};

}  // namespace kelvane::testing
