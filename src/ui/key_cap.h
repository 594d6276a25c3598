#pragma once

#include <QLabel>

namespace brisk {

/// A shortcut as its keys are printed on a keyboard. Wider than a key where the text needs it.
class KeyCap final : public QLabel {
    Q_OBJECT

public:
    explicit KeyCap(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace brisk
