#include "ui/window_gap_controls.h"

#include "settings/app_settings.h"
#include "ui/theme.h"

#include <QSignalBlocker>
#include <QStyleOptionSpinBox>
#include <QWheelEvent>

namespace brisk {

namespace {

constexpr int fieldWidth = 48;

} // namespace

WindowGapField::WindowGapField(QWidget* parent) : QLineEdit(parent) {
    setObjectName("windowGapField");
    setAccessibleName(QStringLiteral("Window spacing"));
    setFont(themeFont(12));
    setAlignment(Qt::AlignRight);
    setFixedWidth(fieldWidth);
    connect(this, &QLineEdit::editingFinished, this, [this] {
        if (isModified()) {
            setModified(false);
            emit edited(text());
        }
    });
}

void WindowGapField::setValue(std::int64_t value) {
    setText(QString::number(value));
}

WindowGapStepper::WindowGapStepper(QWidget* parent) : QSpinBox(parent) {
    setObjectName("windowGapStepper");
    setAccessibleName(QStringLiteral("Window spacing"));
    setRange(0, static_cast<int>(maximumWindowGap));
    // The number is in the field; here are only the arrows, and nothing can be typed.
    lineEdit()->setReadOnly(true);
    lineEdit()->hide();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QSpinBox::valueChanged, this, &WindowGapStepper::stepped);
}

void WindowGapStepper::showValue(std::int64_t value) {
    const QSignalBlocker quiet(this);
    setValue(static_cast<int>(value));
}

QSize WindowGapStepper::sizeHint() const {
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    option.rect = QRect(QPoint(), QSpinBox::sizeHint());
    const QRect field = style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, this);
    const int frame = field.top();
    return {option.rect.width() - field.width() - frame, option.rect.height()};
}

void WindowGapStepper::wheelEvent(QWheelEvent* event) {
    // Meant for the page, which scrolls under the pointer.
    event->ignore();
}

} // namespace brisk
