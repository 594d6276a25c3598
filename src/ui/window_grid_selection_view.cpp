#include "ui/window_grid_selection_view.h"

#include "ui/theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace brisk {

namespace {

constexpr double frameRadius = 10;
constexpr double cellRadius = 5;

QColor withAlpha(QColor color, float alpha) {
    color.setAlphaF(alpha);
    return color;
}

CGPoint pointOf(const QMouseEvent& event) {
    return {.x = event.position().x(), .y = event.position().y()};
}

} // namespace

WindowGridSelectionView::WindowGridSelectionView(const WindowGridSelection& selection, QWidget* parent)
    : QWidget(parent), picker_(selection) {
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(tr("Drag across cells to choose the window's target area."));
    describeTo(*this, tr("Target area"), toolTip());
}

void WindowGridSelectionView::select(const WindowGridSelection& selection) {
    picker_.select(selection);
    selectionChanged();
}

QRectF WindowGridSelectionView::cellRect(GridPicker::Cell cell) const {
    const CGRect rect = picker_.cellRect(cell, drawingSize());
    return {rect.minX(), rect.minY(), rect.width(), rect.height()};
}

QString WindowGridSelectionView::accessibilityValue() const {
    const WindowGridSelection& block = selection();
    return tr("%1, columns %2 to %3, rows %4 to %5")
        .arg(QString::fromStdString(areaDescription(block)))
        .arg(block.column + 1)
        .arg(block.column + block.columnSpan)
        .arg(block.row + 1)
        .arg(block.row + block.rowSpan);
}

void WindowGridSelectionView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const bool hasVisibleFocus = hasFocus() && showsFocus_;
    const QColor accent = themeColor(ColorRole::accent, palette());
    const QColor separator = themeColor(ColorRole::separator, palette());
    // Borders lie inside the widget: half their width in from its edge.
    const double frameWidth = hasVisibleFocus ? 2 : 1;
    const double inset = frameWidth / 2;
    painter.setPen(QPen(hasVisibleFocus ? accent : separator, frameWidth));
    painter.setBrush(themeColor(ColorRole::controlBackground, palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), frameRadius, frameRadius);

    const QColor unselected = withAlpha(themeColor(ColorRole::unemphasizedSelection, palette()), 0.55F);
    for (std::int64_t row = 0; row < selection().rows; ++row) {
        for (std::int64_t column = 0; column < selection().columns; ++column) {
            const GridPicker::Cell cell{.column = column, .row = row};
            const bool isSelected = picker_.isSelected(cell);
            painter.setPen(isSelected ? QPen(accent, 1.5) : QPen(separator, 1));
            painter.setBrush(isSelected ? withAlpha(accent, 0.72F) : unselected);
            painter.drawRoundedRect(cellRect(cell), cellRadius, cellRadius);
        }
    }
}

void WindowGridSelectionView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    showsFocus_ = false;
    if (picker_.press(pointOf(*event), drawingSize())) {
        selectionChanged();
    }
}

void WindowGridSelectionView::mouseMoveEvent(QMouseEvent* event) {
    if (picker_.drag(pointOf(*event), drawingSize())) {
        selectionChanged();
    }
}

void WindowGridSelectionView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && picker_.release(pointOf(*event), drawingSize())) {
        selectionChanged();
    }
}

void WindowGridSelectionView::keyPressEvent(QKeyEvent* event) {
    std::int64_t columns = 0;
    std::int64_t rows = 0;
    switch (event->key()) {
    case Qt::Key_Left:
        columns = -1;
        break;
    case Qt::Key_Right:
        columns = 1;
        break;
    case Qt::Key_Up:
        rows = -1;
        break;
    case Qt::Key_Down:
        rows = 1;
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    showsFocus_ = true;
    update();
    const bool extends = (event->modifiers() & Qt::ShiftModifier) != 0;
    if (extends ? picker_.extendBlock(columns, rows) : picker_.moveBlock(columns, rows)) {
        selectionChanged();
    }
}

void WindowGridSelectionView::focusInEvent(QFocusEvent* event) {
    if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        showsFocus_ = true;
    }
    QWidget::focusInEvent(event);
}

void WindowGridSelectionView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        update();
    }
    QWidget::changeEvent(event);
}

CGSize WindowGridSelectionView::drawingSize() const {
    return {.width = static_cast<double>(width()), .height = static_cast<double>(height())};
}

void WindowGridSelectionView::selectionChanged() {
    update();
    describeTo(*this, accessibleName(), toolTip());
    if (onSelectionChanged) {
        onSelectionChanged(selection());
    }
}

} // namespace brisk
