#pragma once

#include <QPushButton>

namespace brisk {

/// The flat, rounded buttons of the About pane.
class AboutButton final : public QPushButton {
    Q_OBJECT

public:
    explicit AboutButton(const QString& title, const QSize& size, QWidget* parent = nullptr);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool showsFocus_ = false;
};

} // namespace brisk
