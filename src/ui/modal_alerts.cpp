#include "ui/modal_alerts.h"

#include "ui/message_box.h"

#include <QApplication>

namespace brisk {

void ModalAlerts::runModal(const Alert& alert) {
    MessageBox box(alert);
    box.setModal(true);
    box.showInFront();
    box.exec();
}

bool ModalAlerts::isRunningModal() const {
    return QApplication::activeModalWidget() != nullptr;
}

} // namespace brisk
