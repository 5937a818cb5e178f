// A list of files, each with what is to be told of it.
#pragma once

#include <QDialog>
#include <QStringList>
#include <vector>

namespace kelvane {

class WindowLink;

struct ItemsSpec {
    const char* name;  // the dialog's object name
    QString title;
    QString text;
    std::vector<QStringList> rows{};  // a file, and a reason
};

// Opens it over the window; it deletes itself.
void openItems(const WindowLink& link, ItemsSpec spec);

}  // namespace kelvane
