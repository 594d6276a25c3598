#pragma once

#include "app/status_item.h"
#include "platform/system_tray.h"
#include "ui/menu_view.h"
#include "ui/status_notifier_tray.h"

#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

namespace brisk {

/// The status item in whichever tray the desktop has, by D-Bus or by an embedded window.
class QtStatusItem final : public QObject, public StatusItem {
public:
    /// `embeddingTray` is the windowing system's own tray and outlives this.
    QtStatusItem(Callbacks callbacks, SystemTray& embeddingTray);
    ~QtStatusItem() override;

    void updateMenu() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void lookForTray();
    void showIcon();
    void openMenu();

    Callbacks callbacks_;
    SystemTray& embeddingTray_;
    StatusNotifierTray notifierTray_;
    MenuView menu_;
    /// Null until there is a tray. Qt decides once in a process by which protocol its tray icons speak, when the first
    /// is made: one made too early would never speak D-Bus. From then on it follows a tray that goes and comes by
    /// itself.
    std::unique_ptr<QSystemTrayIcon> icon_;
};

} // namespace brisk
