#include "app/app_delegate.h"
#include "app/no_feed_updater.h"
#include "app/product.h"
#include "platform/freedesktop/autostart_login_item.h"
#include "platform/freedesktop/built_in_bundle_info.h"
#include "platform/qt/autostart_settings.h"
#include "platform/qt/link_opener.h"
#include "platform/qt/main_queue.h"
#include "platform/qt/message_bus.h"
#include "platform/qt/pasteboard.h"
#include "platform/qt/termination_signals.h"
#include "platform/qt/wall_clock.h"
#include "platform/x11/desktop.h"
#include "settings/settings_locations.h"
#include "ui/application_icon.h"
#include "ui/custom_layout_editor.h"
#include "ui/drag_overlay.h"
#include "ui/modal_alerts.h"
#include "ui/onboarding_window.h"
#include "ui/qt_application.h"
#include "ui/settings_window.h"
#include "ui/status_item.h"
#include "ui/trust_explanation.h"

#include <QApplication>
#include <QMenuBar>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace {

/// Reached by `finishAtExit` alone.
std::weak_ptr<brisk::AppDelegate> delegateAtExit;

/// When the X server dies, Qt ends the process from inside: main's objects are never destroyed, so what must still be
/// done is done here.
void finishAtExit() {
    if (const auto delegate = delegateAtExit.lock()) {
        delegate->applicationWillTerminate();
    }
}

} // namespace

int main(int, char** argv) {
    using namespace brisk;

    // This program is wired to X11; under a Wayland session it works on the windows of Xwayland. It takes no command
    // line, and Qt gets none to look for options in.
    qputenv("QT_QPA_PLATFORM", "xcb");
    // Standard output may be a pipe that nobody reads any more: a line lost is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
    qt::startNoMessageBus();
    int argumentCount = 1;
    QApplication application(argumentCount, argv);
    const auto desktopID = QString::fromStdString(std::string(product::desktopID));
    QApplication::setApplicationName(desktopID);
    QApplication::setDesktopFileName(desktopID);
    QApplication::setWindowIcon(applicationIcon(QApplication::palette().color(QPalette::WindowText)));
    QApplication::setQuitOnLastWindowClosed(AppDelegate::applicationShouldTerminateAfterLastWindowClosed());

    qt::MainQueue mainQueue;
    const qt::WallClock wallClock;
    ModalAlerts alerts;
    TrustExplanation trustExplanation;
    const auto desktop = x11::Desktop::open(mainQueue, [&] { trustExplanation.show(); });
    if (!desktop) {
        std::cerr << "Brisk could not connect to the X server." << std::endl;
        return EXIT_FAILURE;
    }
    std::weak_ptr<AppDelegate> choosing;
    switch (desktop->singleInstance().start([&choosing] {
        if (const auto delegate = choosing.lock()) {
            delegate->showSettings();
        }
    })) {
    case SingleInstance::Start::alone:
        break;
    case SingleInstance::Start::handedOver:
        return EXIT_SUCCESS;
    case SingleInstance::Start::noAnswer:
        std::cerr << "Brisk runs on this display already, but does not answer." << std::endl;
        return EXIT_FAILURE;
    }
    QtApplication shell([&choosing](const MenuItem& item) {
        if (const auto delegate = choosing.lock()) {
            delegate->perform(item);
        }
    });

    for (auto& input : desktop->inputs()) {
        mainQueue.watch(input.fileDescriptor, std::move(input.read));
    }
    mainQueue.setEndOfTurn([&desktop] {
        desktop->endTurn();
        if (desktop->isBroken()) {
            QApplication::exit(EXIT_FAILURE);
        }
    });
    const qt::TerminationSignals terminationSignals([&shell] { shell.terminate(); });

    qt::LinkOpener links([&trustExplanation] { trustExplanation.show(); });
    qt::Pasteboard pasteboard;
    const freedesktop::BuiltInBundleInfo bundle;
    const auto autostartFolder = freedesktop::autostartFolderOfUser();
    freedesktop::AutostartLoginItem loginItem(autostartFolder, QCoreApplication::applicationFilePath().toStdString(),
                                              [autostartFolder] { qt::openAutostartSettings(autostartFolder); });
    const HotKeyRecorderServices recorderServices{
        .hotKeys = desktop->hotKeys(), .keyInput = desktop->keyInput(), .mainQueue = mainQueue};

    auto overlay = std::make_unique<WindowDragOverlayController>(desktop->nativeWindows());
    // Once the program has started and has nothing else to do: the first drag should not wait for a native panel.
    constexpr std::chrono::milliseconds quietStart{1000};
    mainQueue.asyncAfter(quietStart, [&overlay] {
        if (overlay) {
            overlay->warmUp();
        }
    });

    const auto delegate = std::make_shared<AppDelegate>(
        DesktopServices{.accessibility = desktop->accessibility(),
                        .workspace = desktop->workspace(),
                        .hotKeys = desktop->hotKeys(),
                        .eventMonitor = desktop->eventMonitor(),
                        .mainQueue = mainQueue,
                        .wallClock = wallClock},
        Presentation{
            .application = shell,
            .alerts = alerts,
            .makeStatusItem =
                [&desktop](StatusItem::Callbacks callbacks) {
                    return std::make_unique<QtStatusItem>(std::move(callbacks), desktop->systemTray());
                },
            .makeUpdater = [&alerts] { return std::make_unique<NoFeedUpdater>(alerts); },
            // Asked for once: the controller keeps it.
            .makeOverlay = [&overlay] { return std::move(overlay); },
            .makeSettingsWindow =
                [&](SettingsStore& store, SettingsWindow::Callbacks callbacks) {
                    return std::make_unique<BriskSettingsWindowController>(
                        SettingsWindowServices{
                            .settingsStore = store,
                            .alerts = alerts,
                            .accessibility = desktop->accessibility(),
                            .loginItem = loginItem,
                            .links = links,
                            .pasteboard = pasteboard,
                            .bundle = bundle,
                            .makeMenuBar = [&shell](QWidget* window) { return shell.makeMenuBar(window); },
                            .recorder = recorderServices,
                            .editCustomLayout =
                                [&](QWidget& window, const std::optional<CustomWindowLayout>& layout) {
                                    return editCustomLayout(store, recorderServices, layout, &window);
                                },
                        },
                        std::move(callbacks));
                },
            .makeOnboardingWindow =
                [&](std::function<void()> onFinish) {
                    return std::make_unique<BriskOnboardingWindow>(
                        OnboardingWindowServices{
                            .accessibility = desktop->accessibility(),
                            .mainQueue = mainQueue,
                            .links = links,
                            .productPageAddress = std::string(product::productPageAddress),
                            .makeMenuBar = [&shell](QWidget* window) { return shell.makeMenuBar(window); },
                        },
                        std::move(onFinish));
                },
        },
        settingsFoldersOfUser());
    choosing = delegate;
    delegateAtExit = delegate;
    std::atexit(finishAtExit);

    delegate->applicationDidFinishLaunching();
    const int status = QApplication::exec();
    if (desktop->isBroken()) {
        std::cerr << "Brisk lost its connection to the X server." << std::endl;
    }
    delegate->applicationWillTerminate();
    return status;
}
