#include "ui/drag_overlay.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace brisk {

WindowDragOverlayController::WindowDragOverlayController(NativeWindows& nativeWindows) : nativeWindows_(nativeWindows) {
    compositingChange_.setSingleShot(true);
    QObject::connect(&compositingChange_, &QTimer::timeout, &view_, [this] { updateSurface(); });
    nativeWindows_.setCompositingChangedHandler([this] { compositingChange_.start(0); });
}

WindowDragOverlayController::~WindowDragOverlayController() {
    nativeWindows_.setCompositingChangedHandler({});
}

void WindowDragOverlayController::show(const std::vector<WindowDragZone>& zones,
                                       const std::optional<CommandIdentifier>& active, const ScreenInfo& screen) {
    const NativeWindowID window = panel();
    const bool appears = !std::exchange(isShown_, true);
    const bool moves = appears || screen.frame != frame_;
    if (moves || zones != zones_ || active != active_) {
        zones_ = zones;
        active_ = active;
        frame_ = screen.frame;
        view_.setSurface(surface());
        view_.setZones(zonePictures(zones, active, frame_.origin), frame_.size);
        if (moves) {
            nativeWindows_.setFrame(window, frame_);
        }
        // Before the panel appears: without a compositor it would be a black display for a moment.
        updateShape();
    }
    if (appears) {
        view_.show();
        // Again: the toolkit may have told the window system of its new window only now, and it places what it shows.
        nativeWindows_.setFrame(window, frame_);
    }
    nativeWindows_.orderFrontRegardless(window);
}

void WindowDragOverlayController::hide() {
    isShown_ = false;
    view_.hide();
    view_.setZones({}, {});
}

void WindowDragOverlayController::warmUp() {
    panel();
    const ScreenInfo nowhere{.frame = {.origin = {}, .size = {.width = 64, .height = 64}}, .visibleFrame = {}};
    view_.setZones(
        zonePictures(std::vector<WindowDragZone>{{WindowLayout::maximize, nowhere.frame}}, "window.maximize", {}),
        nowhere.frame.size);
    view_.grab(QRect(0, 0, 64, 64));
    view_.setZones({}, {});
}

NativeWindowID WindowDragOverlayController::panel() {
    if (!std::exchange(isPanelMade_, true)) {
        // Most drags begin on the primary display: a panel that is made there need not change its size.
        if (const QScreen* primary = QGuiApplication::primaryScreen()) {
            view_.setGeometry(primary->geometry());
        }
        view_.winId();
        // Another display may have another scale, on which shape and picture depend.
        QObject::connect(view_.windowHandle(), &QWindow::screenChanged, &view_, [this] {
            view_.updateScale();
            updateSurface();
        });
    }
    return NativeWindowID{view_.winId()};
}

OverlaySurface WindowDragOverlayController::surface() {
    return nativeWindows_.isCompositingActive() ? OverlaySurface::translucent : OverlaySurface::cutOut;
}

void WindowDragOverlayController::updateSurface() {
    if (isShown_) {
        view_.setSurface(surface());
        updateShape();
    }
}

void WindowDragOverlayController::updateShape() {
    // To be carried out, a shape may have to wait for what the server draws for others.
    if (surface() == OverlaySurface::cutOut) {
        isCutOut_ = true;
        nativeWindows_.setShape(panel(), view_.cutOut());
    } else if (std::exchange(isCutOut_, false)) {
        nativeWindows_.setShape(panel(), std::nullopt);
    }
}

} // namespace brisk
