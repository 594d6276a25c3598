#include "ui/window_placement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace brisk {

QScreen& screenUnderPointer() {
    QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

void centreOnScreen(QWidget& window) {
    const QRect available = screenUnderPointer().availableGeometry();
    QRect frame(QPoint(), window.size());
    frame.moveCenter(available.center());
    window.move(std::max(frame.left(), available.left()), std::max(frame.top(), available.top()));
}

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace brisk
