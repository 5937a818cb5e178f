// A window with a list of files as a test wrote them, and its preview.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedWidget>

#include "app/engine_settings.h"
#include "support/ui/desktop_world.h"
#include "ui/core/text.h"

namespace kelvane::testing {

struct NamedFile {
    std::string name, contents;
};

class PreviewWorld {
public:
    // One group of these, under exact contents.
    void load(const std::vector<NamedFile>& files)
    {
        std::vector<std::filesystem::path> paths;
        for (const NamedFile& file : files)
            paths.push_back(world.tree.write("files/" + file.name, file.contents));
        world.onWindowThread([paths](Workbench& bench) {
            Settings settings = bench.desktop().settings();
            EngineOptions options = engineOptionsFrom(settings);
            ListSession& session = bench.beginList(std::move(settings), std::move(options));
            CScanNode definition;
            definition.set(scan_flag::contents, true);
            definition.set(scan_flag::fuzzy, false);
            session.definition = definition;
            if (auto criteria = makeCriteria(definition, session.options, session.access.catalogue))
                session.criteria = *std::move(criteria);
            for (const auto& path : paths)
                if (auto item = bench.platform().shell().parse(path.native()))
                    bench.results().add(*std::move(item), 1, false);
            bench.toMain([](WindowLink& link) { Q_EMIT link.listBegan(); });
        });
    }
    void select(Row row) { world.link().setCurrentItem(world.link().rows().at(row).item); }

    // The label's text once it is shown and holds this.
    [[nodiscard]] bool says(const char* label, const QString& part) const
    {
        return waitUntil([&] {
            const auto* const found = world.find<QLabel>(label);
            return found != nullptr && found->isVisible() && found->text().contains(part);
        });
    }
    [[nodiscard]] bool shows(const QString& text) const
    {
        return waitUntil([&] {
            const auto* const found = world.find<QPlainTextEdit>("preview.text");
            return found->isVisible() && found->toPlainText().contains(text);
        });
    }

    DesktopWorld world;
};

}  // namespace kelvane::testing
