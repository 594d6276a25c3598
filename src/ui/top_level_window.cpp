#include "ui/top_level_window.h"

#include <QAccessible>
#include <QAccessibleWidget>

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

} // namespace brisk
