// A window with one recorder in it, and one hot key in force (Control+Option+Left Arrow), on the real desktop. Says
// line by line on standard output what happens, so that a test can wait for it.

#include "hotkeys/virtual_keys.h"
#include "platform/qt/main_queue.h"
#include "platform/x11/desktop.h"
#include "ui/hot_key_recorder_view.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QHBoxLayout>
#include <QSocketNotifier>

#include <iostream>

namespace {

void say(const std::string& line) {
    std::cout << line << std::endl;
}

} // namespace

int main(int argumentCount, char** arguments) {
    using namespace brisk;
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argumentCount, arguments);
    qt::MainQueue mainQueue;
    const auto desktop = x11::Desktop::open(mainQueue, [] {});
    if (!desktop) {
        return EXIT_FAILURE;
    }
    const QSocketNotifier readable(desktop->fileDescriptor(), QSocketNotifier::Read);
    const auto processEvents = [&] { desktop->processEvents(); };
    QObject::connect(&readable, &QSocketNotifier::activated, &application, processEvents);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &application,
                     processEvents);

    HotKeyService& hotKeys = desktop->hotKeys();
    const auto handler = hotKeys.InstallEventHandler([](std::optional<EventHotKeyID>) {
        say("hot key");
        return noErr;
    });
    const auto hotKey = hotKeys.RegisterEventHotKey(kVK_LeftArrow, controlKey | optionKey, {.id = 100});

    QWidget window;
    QHBoxLayout layout(&window);
    layout.setContentsMargins(40, 40, 40, 40);
    HotKeyRecorderView recorder(std::nullopt,
                                {.hotKeys = hotKeys, .keyInput = desktop->keyInput(), .mainQueue = mainQueue});
    layout.addWidget(&recorder);
    recorder.onRecorded = [](const HotKeyBinding& binding) {
        say("recorded " + std::to_string(binding.keyCode) + " " + binding.display);
    };
    // Connected after the recorder's own: by then it records.
    QObject::connect(&recorder, &QPushButton::clicked, [] { say("recording"); });
    window.show();
    mainQueue.async([&] {
        const QPoint centre = recorder.mapTo(&window, recorder.rect().center());
        say("window " + std::to_string(window.winId()) + " " + std::to_string(centre.x()) + " " +
            std::to_string(centre.y()));
    });
    const int status = hotKey.status == noErr ? QApplication::exec() : EXIT_FAILURE;
    hotKeys.RemoveEventHandler(handler.handler);
    return status;
}
