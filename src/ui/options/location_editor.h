// Where options are kept: moves them there.
#pragma once

#include "ui/options/option_editor.h"

class QComboBox;
class QLabel;

namespace kelvane {

class OptionsKeeper;

// The keeper outlives it.
class LocationEditor final : public OptionEditor {
public:
    explicit LocationEditor(OptionsKeeper& keeper);
    void display(const Settings& settings) override;
    void copy(const Settings&, Settings&) const override {}  // a default moves nothing

private:
    OptionsKeeper& keeper_;
    QComboBox* box_;
    QLabel* place_;
};

}  // namespace kelvane
