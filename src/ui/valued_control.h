#pragma once

#include <QString>

class QWidget;

namespace brisk {

/// A widget of ours with a value in words, for assistive technology. The toolkit passes on values of its own input
/// fields only; this adds those of the widgets that derive from this.
class ValuedControl {
public:
    virtual ~ValuedControl() = default;
    virtual QString accessibilityValue() const = 0;

    ValuedControl(const ValuedControl&) = delete;
    ValuedControl& operator=(const ValuedControl&) = delete;

protected:
    ValuedControl();
    /// Name and help stay. Some desktops' assistive technology reads no such value: there it is spoken as the first
    /// part of the description. To be called when the value has changed, too.
    void describeTo(QWidget& self, const QString& name, const QString& help) const;
};

} // namespace brisk
