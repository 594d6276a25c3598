#pragma once

#include <QWidget>

namespace brisk {

/// A shortcut as its keys are printed on a keyboard. Wider than a key where the text needs it.
class KeyCap final : public QWidget {
    Q_OBJECT

public:
    explicit KeyCap(QString text, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
};

} // namespace brisk
