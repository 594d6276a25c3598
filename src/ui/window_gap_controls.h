#pragma once

#include <QLineEdit>
#include <QSpinBox>

#include <cstdint>

namespace brisk {

/// The field in which the gap between windows is typed, and the stepper beside it. They hold a text and a value, and
/// report edits; what becomes of them is the owner's.
class WindowGapField final : public QLineEdit {
    Q_OBJECT

public:
    explicit WindowGapField(QWidget* parent = nullptr);
    /// Shows the value; what was being typed is gone.
    void setValue(std::int64_t value);

signals:
    /// The user has finished with another text than was shown.
    void edited(const QString& text);
};

class WindowGapStepper final : public QSpinBox {
    Q_OBJECT

public:
    explicit WindowGapStepper(QWidget* parent = nullptr);
    /// Without reporting it.
    void showValue(std::int64_t value);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void stepped(int value);

protected:
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace brisk
