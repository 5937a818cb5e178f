// The user guide as it lies in the program: chapters of Markdown, and the places in them that have names.
#pragma once

#include <QMap>
#include <QString>
#include <vector>

namespace kelvane {

struct GuidePage {
    QString file;                   // "clean-up.md"
    QString title;                  // its first heading
    QString markdown;               // without the lines that only name places
    QMap<QString, QString> places;  // a name in the source ("toc_clean"), and the heading that follows it
};

// The first is the beginning, the others follow in the order in which it names them. Empty where the program was built
// without the guide.
[[nodiscard]] std::vector<GuidePage> guidePages();

// The name that a heading has by itself: lower case, hyphens for blanks, nothing else but letters and digits.
[[nodiscard]] QString anchorOf(const QString& heading);

// The page that has a place of this name, by its source or its headings; -1 for none.
[[nodiscard]] int pageOfPlace(const std::vector<GuidePage>& pages, const QString& name);

}  // namespace kelvane
