#include "ui/status_item.h"

#include "ui/face_glyph.h"
#include "ui/status_icon.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>

#include <utility>

namespace brisk {

QtStatusItem::QtStatusItem(Callbacks callbacks, SystemTray& embeddingTray)
    : callbacks_(std::move(callbacks)),
      embeddingTray_(embeddingTray),
      menu_(MenuView::Shortcuts::shown, callbacks_.onChosen) {
    connect(&menu_.menu(), &QMenu::aboutToShow, this, [this] { updateMenu(); });
    connect(&notifierTray_, &StatusNotifierTray::changed, this, [this] { lookForTray(); });
    // Not from inside the announcement: it comes while the platform hands out its events.
    embeddingTray_.watch([this] {
        QMetaObject::invokeMethod(
            this, [this] { lookForTray(); }, Qt::QueuedConnection);
    });
    qApp->installEventFilter(this);
    lookForTray();
}

QtStatusItem::~QtStatusItem() {
    embeddingTray_.watch(nullptr);
}

void QtStatusItem::updateMenu() {
    menu_.setContents(callbacks_.menuNeedsUpdate());
}

bool QtStatusItem::eventFilter(QObject* watched, QEvent* event) {
    if (icon_ && watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        icon_->setIcon(statusIcon(QApplication::palette()));
    }
    return QObject::eventFilter(watched, event);
}

void QtStatusItem::lookForTray() {
    if (icon_) {
        return;
    }
    notifierTray_.ask([this](bool isPresent) {
        if (!icon_ && (isPresent || embeddingTray_.isPresent())) {
            showIcon();
        }
    });
}

void QtStatusItem::showIcon() {
    icon_ = std::make_unique<QSystemTrayIcon>(statusIcon(QApplication::palette()));
    icon_->setToolTip(QString::fromUtf8(menuBarFaceDescription));
    icon_->setContextMenu(&menu_.menu());
    connect(icon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // The other click opens the menu as it is the tray icon's own.
        if (reason == QSystemTrayIcon::Trigger) {
            openMenu();
        }
    });
    icon_->show();
}

void QtStatusItem::openMenu() {
    menu_.menu().popup(QCursor::pos());
}

} // namespace brisk
