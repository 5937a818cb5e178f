// Which files and folders a scan leaves out.
#pragma once

#include <QGroupBox>
#include <vector>

#include "app/questions.h"
#include "base/text_table.h"
#include "platform/archive_support.h"
#include "ui/scan/scan_order.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace kelvane {

class OptionsBox final : public QGroupBox {
    Q_OBJECT

public:
    // archives: whether this system reads what is inside them.
    explicit OptionsBox(bool archives = archivesAreRead(), QWidget* parent = nullptr);

    void show(const ScanOrder& order);
    void read(ScanOrder& order) const;
    // Hides what a simpler mode does not offer.
    void setMode(InterfaceMode mode);
    // Whether the sizes cannot be searched by; the reason is shown here.
    [[nodiscard]] bool hasProblem() const;

Q_SIGNALS:
    void edited();

private:
    [[nodiscard]] QCheckBox* makeBox(const char* name, TextId label);
    [[nodiscard]] QLineEdit* makeSize(const char* name);
    void makeLayout();
    [[nodiscard]] QString sizeProblem() const;
    void refresh();

    struct FlagBox {
        std::uint32_t flag;
        bool risky;  // to be without
        QCheckBox* box;
    };
    std::vector<FlagBox> flags_;
    QCheckBox *archives_, *exhaustive_;
    QLineEdit *from_, *to_;
    QLabel* problem_;
};

}  // namespace kelvane
