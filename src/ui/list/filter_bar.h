// Above the list: what is typed here narrows it.
#pragma once

#include <QTimer>
#include <QWidget>

#include "ui/frame/frame_parts.h"

class QCheckBox;
class QLineEdit;

namespace kelvane {

class FilterBar final : public QWidget {
    Q_OBJECT

public:
    FilterBar(WindowLink& link, QWidget* parent);

    void addCommands(const FrameParts& parts);
    [[nodiscard]] QLineEdit& edit() const { return *edit_; }

Q_SIGNALS:
    void applied();  // another filter, or none any more: the rows change now
    void left();     // the person is done here, and back at the list

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void typed();
    void apply(const QString& text);

    WindowLink& link_;
    QLineEdit* edit_;
    QCheckBox* allColumns_;
    QTimer settled_;        // nobody types as fast as this
    bool filters_ = false;  // something is filtered by
};

}  // namespace kelvane
