#include "ui/modal_alerts.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace brisk {

void ModalAlerts::runModal(const Alert& alert) {
    QMessageBox box(QMessageBox::Information, QStringLiteral("Brisk"), QString::fromStdString(alert.messageText),
                    QMessageBox::Ok);
    box.button(QMessageBox::Ok)->setText(QStringLiteral("OK"));
    box.setInformativeText(QString::fromStdString(alert.informativeText));
    // The names in it are other programs': shown to the letter, not as mark-up.
    for (QLabel* label : box.findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText);
    }
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    box.show();
    box.raise();
    box.activateWindow();
    box.exec();
}

bool ModalAlerts::isRunningModal() const {
    return QApplication::activeModalWidget() != nullptr;
}

} // namespace brisk
