// A small world with pictures in it: files in memory, previews from a table.
#pragma once

#include <memory>
#include <string>

#include "base/random.h"
#include "engine/grouping_world.h"
#include "engine/similar_pictures.h"
#include "props/made_up_previews.h"
#include "support/fake_media_reading.h"
#include "support/memory_run_cache.h"

namespace kelvane::testing {

struct PictureWorld : GroupingWorld {
    FakeMediaReading reading;
    MemoryRunCaches caches;
    std::unique_ptr<RunCache> cache;
    std::unique_ptr<MediaDescriber> describer;
    std::unique_ptr<SimilarContent> pictures;

    // Anew, as a new run of the program would.
    void begin(ProbeNumbers numbers = ProbeNumbers::perPair)
    {
        seedRandom(7);
        describer = std::make_unique<MediaDescriber>(*shell, reading, cache.get());
        pictures = makeSimilarPictures(properties, *describer, numbers, options.threads);
        similar = pictures.get();
    }
    void add(const std::string& path, Ref<CachedBitmap> preview)
    {
        files.addFile(path, path);
        reading.addPreview(path, std::move(preview));
    }
    // A scene, lit and cropped copies of it.
    void addFamily(const std::string& name, unsigned seed)
    {
        const Scene scene(seed);
        add(name + ".jpg", scene.preview(100, 75));
        add(name + " bright.jpg", scene.preview(100, 75, 1.2));
        add(name + " cropped.jpg", scene.preview(100, 75, 1, 0.02));
    }
    [[nodiscard]] ScanCriteria alike(std::int32_t similarity = 90, Category category = Category::images,
                                     const char* names = "") const
    {
        ScanCriteria by = criteria(exactContents | scan_flag::fuzzy, names, category);
        by.similarity = similarity;
        by.masks = FileMasks();
        return by;
    }
    // Describes and groups everything, as a scan does.
    RecordingSink search(const ScanCriteria& by)
    {
        CandidateList list;
        gather(list);
        for (Candidate& file : list)
            static_cast<void>(pictures->describe(by, file, cancel));
        std::erase_if(list, [&](Candidate& file) { return !pictures->admits(by, file); });
        RecordingSink sink;
        static_cast<void>(group(by, list, sink));
        return sink;
    }
    [[nodiscard]] Candidate file(const std::string& path) { return Candidate(*shell->parse(native(path))); }
};

}  // namespace kelvane::testing
