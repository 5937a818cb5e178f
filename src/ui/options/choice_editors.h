// Editors that offer a choice: one of several texts, a colour.
#pragma once

#include "ui/options/option_editor.h"

class QCheckBox;
class QColor;
class QComboBox;
class QPushButton;

namespace kelvane {

// One of the texts, by its place; they may depend on other settings.
class ChoiceEditor final : public ValueEditor<std::uint32_t> {
public:
    using Texts = std::function<QStringList(const Settings&)>;
    ChoiceEditor(Texts texts, SettingAccess<std::uint32_t> access);
    void display(const Settings& settings) override;

private:
    Texts texts_;
    QComboBox* box_;
};

// 0x00BBGGRR, or the system's own.
class ColorEditor final : public ValueEditor<std::uint32_t> {
public:
    explicit ColorEditor(SettingAccess<std::uint32_t> access);
    void display(const Settings& settings) override;

private:
    void choose();

    std::uint32_t color_ = 0;
    QPushButton* button_;
    QCheckBox* ofSystem_;
};

[[nodiscard]] QColor colorOf(std::uint32_t stored);
[[nodiscard]] std::uint32_t storedColor(const QColor& color);

}  // namespace kelvane
