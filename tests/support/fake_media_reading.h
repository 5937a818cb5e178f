// Fingerprints, previews and facts as a test wants them, without processes and without media.
#pragma once

#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "media/media_reading.h"
#include "support/paths.h"

namespace kelvane::testing {

// A fingerprint of these series, which should be standardised as real ones are.
inline Ref<MP3Finger> fingerOf(const std::vector<float>& centroid, const std::vector<float>& spread)
{
    std::vector<float> series = centroid;
    series.insert(series.end(), spread.begin(), spread.end());
    std::vector<std::byte> bytes(series.size() * sizeof(float));
    std::memcpy(bytes.data(), series.data(), bytes.size());
    return MP3Finger::unpacked(bytes, centroid.size());
}

// Answers from a table of full paths; files that are not in it have no known format, and ".none" is hopeless.
class FakeMediaReading final : public MediaReading {
public:
    struct File {
        MediaFault fault;  // of whatever is asked for and not given below
        std::vector<NamedValue> facts;
        Ref<MP3Finger> fingerprint;
        Ref<CachedBitmap> preview;
    };

    MediaAnswer read(const ShellItem& item, const MediaWish& wish, const CancelFlag& cancel) override
    {
        const std::string path = posix(item.fullName());
        note(path, wish);
        while (blocked && !cancel.cancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        MediaAnswer answer;
        if (cancel.cancelled()) {
            answer.fault.outcome = MediaOutcome::cancelled;
            return answer;
        }
        return answered(path, wish);
    }
    bool hopeless(const ShellItem& item) const override { return posix(item.fullName()).ends_with(".none"); }
    std::vector<std::string> missing() const override { return missingPrograms; }
    const MediaOptions& options() const override { return settings; }

    void addSong(const std::string& path, Ref<MP3Finger> fingerprint, std::int64_t milliseconds)
    {
        files[path].fingerprint = std::move(fingerprint);
        setDuration(path, milliseconds);
    }
    void addPreview(const std::string& path, Ref<CachedBitmap> preview) { files[path].preview = std::move(preview); }
    void setDuration(const std::string& path, std::int64_t milliseconds)
    {
        setFact(path, "System.Media.Duration",
                RawValue::number(VarType::uint64, static_cast<std::uint64_t>(milliseconds) * 10'000));
    }
    void setFact(const std::string& path, std::string name, RawValue value)
    {
        files[path].facts.push_back({std::move(name), std::move(value)});
    }
    void fail(const std::string& path, MediaOutcome outcome, std::string detail = {})
    {
        files[path].fault = {outcome, outcome == MediaOutcome::codecMissing ? detail : "", detail};
    }
    [[nodiscard]] std::vector<MediaWish> wishesFor(const std::string& path) const
    {
        const std::lock_guard lock(mutex_);
        const auto found = wishes_.find(path);
        return found != wishes_.end() ? found->second : std::vector<MediaWish>{};
    }

    std::map<std::string, File> files;  // left alone while a scan runs
    MediaOptions settings;
    std::vector<std::string> missingPrograms;
    std::atomic<int> reads{0};
    std::atomic<bool> blocked{false};                     // until cancelled
    std::function<void(const std::string& path)> onRead;  // on the reading threads

private:
    void note(const std::string& path, const MediaWish& wish)
    {
        ++reads;
        if (onRead)
            onRead(path);
        const std::lock_guard lock(mutex_);
        wishes_[path].push_back(wish);
    }

    MediaAnswer answered(const std::string& path, const MediaWish& wish) const
    {
        const auto found = files.find(path);
        MediaAnswer answer;
        if (found == files.end()) {
            answer.fault.outcome = MediaOutcome::unknownFormat;
            return answer;
        }
        const bool broken = found->second.facts.empty() && found->second.fault.outcome != MediaOutcome::made;
        const bool complete = (!wish.fingerprint || found->second.fingerprint) &&
                              (!wish.preview || found->second.preview) && (!wish.facts || !broken);
        if (!complete)
            answer.fault = found->second.fault;
        if (!complete && answer.fault.outcome == MediaOutcome::made)
            answer.fault.outcome = MediaOutcome::nothingThere;
        if (wish.facts)
            answer.facts = found->second.facts;
        if (wish.fingerprint)
            answer.fingerprint = found->second.fingerprint;
        if (wish.preview)
            answer.preview = found->second.preview;
        return answer;
    }

    mutable std::mutex mutex_;
    std::map<std::string, std::vector<MediaWish>> wishes_;
};

}  // namespace kelvane::testing
