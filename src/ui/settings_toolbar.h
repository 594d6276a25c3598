#pragma once

#include "app/settings_pane.h"

#include <QTabBar>

namespace brisk {

/// The settings window's toolbar: one item a pane, an icon over its label.
class SettingsToolbar final : public QTabBar {
    Q_OBJECT

public:
    explicit SettingsToolbar(QWidget* parent = nullptr);
    /// Shows which pane is selected, without reporting it.
    void setSelectedPane(SettingsPane pane);

signals:
    void paneChosen(brisk::SettingsPane pane);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int widestLabel() const;

    /// Only for someone who works by keyboard.
    bool showsFocus_ = false;
};

} // namespace brisk
