// Editors of single values: ticks, numbers, texts, words of bits.
#pragma once

#include "app/settings_table.h"
#include "ui/options/option_editor.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace kelvane {

class TickEditor final : public ValueEditor<bool> {
public:
    TickEditor(const QString& label, SettingAccess<bool> access);
    void display(const Settings& settings) override;
    [[nodiscard]] bool hasOwnLabel() const override { return true; }

private:
    QCheckBox* box_;
};

// Of a stored number, within the bounds of its rule.
class NumberEditor final : public ValueEditor<std::uint32_t> {
public:
    NumberEditor(const SettingRow& row, SettingAccess<std::uint32_t> access);
    void display(const Settings& settings) override;

private:
    QSpinBox* box_;
};

// A word of bits in hexadecimal.
class BitsEditor final : public ValueEditor<std::uint32_t> {
public:
    explicit BitsEditor(SettingAccess<std::uint32_t> access);
    void display(const Settings& settings) override;

private:
    QLineEdit* line_;
};

// `browse`: a button beside it chooses a file.
class TextEditor final : public ValueEditor<std::u16string> {
public:
    TextEditor(SettingAccess<std::u16string> access, bool isList, bool browse);
    void display(const Settings& settings) override;

private:
    void chooseFile();

    QLineEdit* line_;
};

// What nobody edits.
class FixedText final : public OptionEditor {
public:
    explicit FixedText(std::function<std::u16string(const Settings&)> show);
    void display(const Settings& settings) override;
    void copy(const Settings&, Settings&) const override {}

private:
    std::function<std::u16string(const Settings&)> show_;
    QLabel* label_;
};

}  // namespace kelvane
