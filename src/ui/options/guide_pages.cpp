#include "ui/options/guide_pages.h"

#include <QFile>
#include <QRegularExpression>
#include <algorithm>

namespace kelvane {
namespace {

const QString folder = QStringLiteral(":/guide/");
const QString first = QStringLiteral("index.md");

// "# Title" at any depth.
QString headingOf(const QString& line)
{
    static const QRegularExpression heading(QStringLiteral("^#{1,6}\\s+(.*\\S)\\s*$"));
    return heading.match(line).captured(1);
}

GuidePage readPage(const QString& file)
{
    static const QRegularExpression place(QStringLiteral("^<a id=\"([^\"]+)\"></a>$"));
    QFile source(folder + file);
    GuidePage page{file, {}, {}, {}};
    if (!source.open(QIODevice::ReadOnly))
        return page;
    QStringList waiting;  // names whose heading is still to come
    for (const QString& line : QString::fromUtf8(source.readAll()).split(u'\n')) {
        if (const auto named = place.match(line); named.hasMatch()) {
            waiting.push_back(named.captured(1));
            continue;
        }
        page.markdown += line + u'\n';
        const QString heading = headingOf(line);
        if (heading.isEmpty())
            continue;
        if (page.title.isEmpty())
            page.title = heading;
        for (const QString& name : std::exchange(waiting, {}))
            page.places[name] = heading;
    }
    return page;
}

bool hasHeading(const GuidePage& page, const QString& anchor)
{
    const QStringList lines = page.markdown.split(u'\n');
    return std::any_of(lines.begin(), lines.end(), [&](const QString& line) {
        const QString heading = headingOf(line);
        return !heading.isEmpty() && anchorOf(heading) == anchor;
    });
}

}  // namespace

std::vector<GuidePage> guidePages()
{
    static const QRegularExpression chapter(QStringLiteral("^\\d+\\. \\[[^\\]]*\\]\\(([a-z-]+\\.md)\\)"),
                                            QRegularExpression::MultilineOption);
    std::vector<GuidePage> pages{readPage(first)};
    if (pages.front().markdown.isEmpty())
        return {};
    const QString contents = pages.front().markdown;
    for (auto found = chapter.globalMatch(contents); found.hasNext();)
        pages.push_back(readPage(found.next().captured(1)));
    return pages;
}

QString anchorOf(const QString& heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == u'-' || c == u'_')
            anchor += c;
        else if (c == u' ')
            anchor += u'-';
    }
    return anchor;
}

int pageOfPlace(const std::vector<GuidePage>& pages, const QString& name)
{
    const auto page = std::find_if(pages.begin(), pages.end(), [&](const GuidePage& candidate) {
        return candidate.places.contains(name) || hasHeading(candidate, name);
    });
    return page == pages.end() ? -1 : static_cast<int>(page - pages.begin());
}

}  // namespace kelvane
