// The least that a Qt program in the tray takes: an icon with a menu of one item, one grabbed key, and, where a size is
// given, one empty window of it that is opened and may be closed. What the product's start and memory are measured
// against.
//
// usage: bare_tray [<width> <height>]
// Holds Ctrl+Alt+1.

#include <QtCore/QAbstractNativeEventFilter>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>
#include <QtWidgets/QWidget>

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

class KeyFilter final : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) override {
        if (type == "xcb_generic_event_t" &&
            static_cast<const xcb_generic_event_t*>(message)->response_type == XCB_KEY_PRESS) {
            QApplication::beep();
        }
        return false;
    }
};

void grabKey() {
    constexpr xcb_keycode_t digit1 = 10;
    xcb_connection_t* const xcb = qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    xcb_grab_key(xcb, 0, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, digit1, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_flush(xcb);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    constexpr int iconSize = 22;
    QPixmap picture(iconSize, iconSize);
    picture.fill(Qt::transparent);
    QPainter(&picture).drawEllipse(picture.rect().adjusted(2, 2, -2, -2));
    QMenu menu;
    menu.addAction("Quit", &application, &QCoreApplication::quit);
    QSystemTrayIcon tray{QIcon(picture)};
    tray.setContextMenu(&menu);
    tray.show();

    KeyFilter filter;
    application.installNativeEventFilter(&filter);
    grabKey();

    QWidget window;
    if (argc == 3) {
        window.resize(std::atoi(argv[1]), std::atoi(argv[2]));
        window.show();
    }
    return QApplication::exec();
}
