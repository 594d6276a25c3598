#include "ui/settings_window_rig.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

/// Waits until a window has been painted.
class PaintWatcher final : public QObject {
public:
    explicit PaintWatcher(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest || event->type() == QEvent::Expose) {
            // Taken up after the event, which does the painting.
            QMetaObject::invokeMethod(&loop_, &QEventLoop::quit, Qt::QueuedConnection);
        }
        return false;
    }
    /// In a loop as the program's own, in which what was replaced is also deleted.
    void waitForPaint() { loop_.exec(); }

private:
    QEventLoop loop_;
};

/// As its user would, with all that the window does once it is closed.
void close(QWidget& window) {
    window.close();
    QCoreApplication::processEvents();
}

void report(const char* what, std::vector<double> milliseconds) {
    std::ranges::sort(milliseconds);
    std::printf("%-52s median %6.1f ms, worst %6.1f ms\n", what, milliseconds[milliseconds.size() / 2],
                milliseconds.back());
}

} // namespace

/// How long the user waits for the settings window: from the request to the first paint, the event loop included.
int main(int argc, char** argv) {
    using namespace brisk;
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen").toUtf8());
    const QApplication application(argc, argv);
    constexpr int rounds = 15;

    for (const int layouts : {0, 100}) {
        QElapsedTimer creation;
        creation.start();
        SettingsWindowRig rig;
        std::printf("%d custom layouts; controller made in %.1f ms\n", layouts,
                    static_cast<double>(creation.nsecsElapsed()) / 1e6);
        rig.addLayouts(layouts);
        QWidget& window = rig.controller.window();
        PaintWatcher watcher(window);
        const auto measure = [&](SettingsPane pane) {
            QElapsedTimer timer;
            timer.start();
            rig.controller.show(pane);
            watcher.waitForPaint();
            return static_cast<double>(timer.nsecsElapsed()) / 1e6;
        };
        report("  open for the first time, on General", {measure(SettingsPane::general)});
        std::vector<double> opening;
        std::vector<double> openingOnWindows;
        std::vector<double> switching;
        for (int round = 0; round < rounds; ++round) {
            close(window);
            opening.push_back(measure(SettingsPane::general));
            switching.push_back(measure(SettingsPane::windows));
            close(window);
            openingOnWindows.push_back(measure(SettingsPane::windows));
            measure(SettingsPane::sync);
        }
        report("  open again, on General", opening);
        report("  open again, on Windows", openingOnWindows);
        report("  switch from General to Windows", switching);
    }
    return 0;
}
