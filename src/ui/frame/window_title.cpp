#include "ui/frame/window_title.h"

#include <QMainWindow>
#include <QStringList>

#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr qsizetype mostCharacters = 120;  // of a title; more is cut off anyway

QString folderNames(Workbench& bench, const std::string& roots)
{
    QStringList names;
    for (const std::string& root : bench.platform().paths().splitRoots(roots))
        names.push_back(toQt(displayFromNative(nativeFromBytes(root))));
    return names.join(QStringLiteral(", "));
}

QString cut(const QString& text)
{
    return text.size() <= mostCharacters ? text : text.left(mostCharacters - 1) + QChar(0x2026);
}

}  // namespace

QString whatWasSearched(Workbench& bench)
{
    const ListSession* const session = bench.session();
    if (session == nullptr)
        return {};
    if (!session->file.empty())
        return toQt(displayFromNative(std::filesystem::path(nativeFromBytes(session->file)).filename().native()));
    return session->definition ? cut(folderNames(bench, session->definition->roots)) : QString();
}

WindowTitle::WindowTitle(WindowLink& link, QMainWindow& window) : QObject(&window), link_(link), window_(window)
{
    window.setWindowTitle(QStringLiteral("Kelvane"));
    connect(&link, &WindowLink::listBegan, this, &WindowTitle::ask);
    connect(&link, &WindowLink::jobChanged, this, &WindowTitle::ask);  // a list that was saved has a file
}

void WindowTitle::ask()
{
    link_.fetch(this, whatWasSearched, [this](const QString& searched) {
        const QString program = QStringLiteral("Kelvane");
        window_.setWindowTitle(searched.isEmpty() ? program : searched + QStringLiteral(" - ") + program);
    });
}

}  // namespace kelvane
