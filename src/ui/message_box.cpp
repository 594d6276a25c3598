#include "ui/message_box.h"

#include "ui/application_icon.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace brisk {

namespace {

/// Of the texts and the icon, in pixels.
constexpr int narrowest = 400;

} // namespace

MessageBox::MessageBox(const Alert& alert)
    : QMessageBox(QMessageBox::Information, QStringLiteral("Brisk"), QString::fromStdString(alert.messageText),
                  QMessageBox::Ok) {
    button(QMessageBox::Ok)->setText(QStringLiteral("OK"));
    setInformativeText(QString::fromStdString(alert.informativeText));
    setIconPixmap(applicationIcon(palette().color(QPalette::WindowText)).pixmap(QSize(48, 48), devicePixelRatioF()));
    if (auto* const label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
    // Left alone, the box is as narrow as its first text and breaks the second into a column of words.
    if (auto* const grid = qobject_cast<QGridLayout*>(layout())) {
        grid->addItem(new QSpacerItem(narrowest, 0), grid->rowCount(), 0, 1, grid->columnCount());
    }
    // The names in it are other programs': shown to the letter, not as mark-up.
    for (QLabel* label : findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText);
    }
    setWindowFlag(Qt::WindowStaysOnTopHint);
}

void MessageBox::showInFront() {
    show();
    raise();
    activateWindow();
}

} // namespace brisk
