#pragma once

#include "layouts/grid_picker.h"
#include "ui/valued_control.h"

#include <QWidget>

#include <functional>

namespace brisk {

/// A grid of cells that stands for a display, whatever direction the user reads in, and in which a block of cells is
/// chosen: by dragging across it, or with the arrow keys, which move the block and with Shift its lower right corner.
class WindowGridSelectionView final : public QWidget, public ValuedControl {
    Q_OBJECT

public:
    explicit WindowGridSelectionView(const WindowGridSelection& selection, QWidget* parent = nullptr);

    const WindowGridSelection& selection() const { return picker_.selection(); }
    /// Shows and reports another grid.
    void select(const WindowGridSelection& selection);
    /// Where a cell is drawn.
    QRectF cellRect(GridPicker::Cell cell) const;

    /// Told of every selection made; may be left out.
    std::function<void(const WindowGridSelection&)> onSelectionChanged;

    QString accessibilityValue() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    CGSize drawingSize() const;
    void selectionChanged();

    GridPicker picker_;
    /// The focus came by the keyboard, or the keyboard was used since: it is made visible.
    bool showsFocus_ = false;
};

} // namespace brisk
