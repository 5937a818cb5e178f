// Carries changes of options out: in memory at once, and soon after where settings are kept.
#pragma once

#include <QObject>
#include <QTimer>

#include "ui/core/window_link.h"
#include "ui/options/option_editor.h"

namespace kelvane {

struct SettingRow;

// Main thread; files are written on the thread of the window.
class OptionsKeeper final : public QObject {
    Q_OBJECT

public:
    OptionsKeeper(WindowLink& link, QObject* parent);
    // What still waits is on its way to the window's thread, or is saved at the program's end.
    ~OptionsKeeper() override;

    [[nodiscard]] Settings settings() const { return link_.desktop().settings(); }
    [[nodiscard]] Settings defaults() const;
    // Where they are kept, for people.
    [[nodiscard]] QString place() const;

    // `row` is what the change is of; null for bits.
    void change(const SettingRow* row, const SettingsChange& change);
    void moveTo(PersistenceMode mode);
    void exportTo(const QString& file);
    void importFrom(const QString& file);

Q_SIGNALS:
    void changed();
    // For the person: what did not work, and why; or what was done.
    void failed(const QString& text);
    void told(const QString& text);

private:
    template <class Work>
    void carryOut(Work work);
    void save();
    void saveWaiting();
    void take(bool done, const QString& text);

    WindowLink& link_;
    QTimer soon_;
};

}  // namespace kelvane
