#include "ui/qt_application.h"

#include "ui/menu_view.h"

#include <QCoreApplication>
#include <QMenuBar>

#include <cstdlib>
#include <utility>

namespace brisk {

QtApplication::QtApplication(std::function<void(const MenuItem&)> onChosen) : onChosen_(std::move(onChosen)) {}

void QtApplication::terminate() {
    // Ends the loops of modal dialogs, too, and lets no new one begin. Not `quit`: that asks the windows, and one could
    // refuse.
    QCoreApplication::exit(EXIT_SUCCESS);
}

QMenuBar* QtApplication::makeMenuBar(QWidget* window) const {
    auto* const bar = new QMenuBar(window);
    auto* const view = new MenuView(MenuView::Shortcuts::active, onChosen_);
    view->setParent(bar);
    view->setContents(mainMenu_);
    bar->addMenu(&view->menu());
    return bar;
}

} // namespace brisk
