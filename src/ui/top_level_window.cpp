#include "ui/top_level_window.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QMetaObject>

namespace brisk {

namespace {

QAccessibleInterface* makeAccessibleWindow(const QString&, QObject* object) {
    auto* const window = dynamic_cast<TopLevelWindow*>(object);
    return window != nullptr ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

TopLevelWindow::TopLevelWindow() {
    QAccessible::installFactory(makeAccessibleWindow); // the second time and on, nothing
}

void TopLevelWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    const auto giveBack = [this] {
        if (!isVisible()) {
            destroy();
        }
    };
    // Once it is hidden, which it is not before all have heard of this.
    QMetaObject::invokeMethod(this, giveBack, Qt::QueuedConnection);
}

} // namespace brisk
