// A word that a person looks for an option by: as typed, or another one that means much the same.
#pragma once

#include <QStringList>

namespace kelvane {

class SearchedWord {
public:
    explicit SearchedWord(const QString& typed);

    // In lower case.
    [[nodiscard]] const QString& typed() const { return typed_; }
    // Whether the text, in lower case, has it or one that stands for it.
    [[nodiscard]] bool fits(const QString& text) const;

private:
    QString typed_;
    QStringList others_;
};

}  // namespace kelvane
