// What changes one option: shows its value and says what becomes of it.
#pragma once

#include <QWidget>
#include <functional>

#include "app/settings.h"

namespace kelvane {

using SettingsChange = std::function<void(Settings&)>;

// How one value is read and written; what is written is brought within its bounds on the way.
template <class T>
struct SettingAccess {
    std::function<T(const Settings&)> read;
    std::function<void(Settings&, const T&)> write;
};

// Main thread.
class OptionEditor : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // Shows the value as it is now, without saying that it was edited.
    virtual void display(const Settings& settings) = 0;
    // Of this option alone: for taking a default.
    virtual void copy(const Settings& from, Settings& to) const = 0;
    // Whether it names the option itself, so that no label has to stand before it.
    [[nodiscard]] virtual bool hasOwnLabel() const { return false; }
    // Whether it wants the whole width, below its label.
    [[nodiscard]] virtual bool isLarge() const { return false; }

Q_SIGNALS:
    // The person wants another value.
    void edited(const kelvane::SettingsChange& change);
};

// An editor of one value.
template <class T>
class ValueEditor : public OptionEditor {
public:
    explicit ValueEditor(SettingAccess<T> access) : access_(std::move(access)) {}

    void copy(const Settings& from, Settings& to) const override { access_.write(to, access_.read(from)); }

protected:
    [[nodiscard]] T read(const Settings& settings) const { return access_.read(settings); }
    void tell(T value)
    {
        Q_EMIT edited(
            [write = access_.write, value = std::move(value)](Settings& settings) { write(settings, value); });
    }

private:
    SettingAccess<T> access_;
};

}  // namespace kelvane
