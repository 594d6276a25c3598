#include "ui/valued_control.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>

namespace brisk {

namespace {

class ValuedAccessible final : public QAccessibleWidget {
public:
    ValuedAccessible(QWidget& widget, const ValuedControl& control)
        : QAccessibleWidget(&widget, isButton(widget) ? QAccessible::PushButton : QAccessible::Graphic),
          control_(control) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? control_.accessibilityValue() : QAccessibleWidget::text(kind);
    }
    QStringList actionNames() const override {
        return isButton(*widget()) ? QStringList{pressAction(), setFocusAction()} : QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        auto* const button = qobject_cast<QAbstractButton*>(widget());
        if (button != nullptr && name == pressAction()) {
            button->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    static bool isButton(const QWidget& widget) { return qobject_cast<const QAbstractButton*>(&widget) != nullptr; }

    const ValuedControl& control_;
};

QAccessibleInterface* makeAccessibleControl(const QString&, QObject* object) {
    auto* const widget = qobject_cast<QWidget*>(object);
    const auto* const control = dynamic_cast<ValuedControl*>(object);
    return widget != nullptr && control != nullptr ? new ValuedAccessible(*widget, *control) : nullptr;
}

} // namespace

// Before the widget says anything about itself: Qt keeps the accessible that it makes at the first word.
ValuedControl::ValuedControl() {
    QAccessible::installFactory(makeAccessibleControl); // the second time and on, nothing
}

void ValuedControl::describeTo(QWidget& self, const QString& name, const QString& help) const {
    self.setAccessibleName(name);
    self.setAccessibleDescription(accessibilityValue() + QStringLiteral(". ") + help);
}

} // namespace brisk
