#pragma once

#include <QPushButton>

namespace brisk {

/// A button that looks like a link. The underline is thicker while the focus came to it by keyboard, as there is no
/// ring around it.
class LinkButton final : public QPushButton {
    Q_OBJECT

public:
    explicit LinkButton(QString title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// Not the button's own text, in which an ampersand of an address would be a mnemonic.
    QString title_;
    bool showsFocus_ = false;
};

} // namespace brisk
