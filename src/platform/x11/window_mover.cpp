#include "platform/x11/window_mover.h"

#include "platform/x11/events.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace brisk::x11 {

namespace {

/// Twice the slowest arrival seen on any window manager.
constexpr std::chrono::milliseconds patience{150};

/// Client message vocabulary of the Extended Window Manager Hints.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t gravityNorthWest = 1;
constexpr std::uint32_t hasX = 1U << 8U;
constexpr std::uint32_t hasY = 1U << 9U;
constexpr std::uint32_t hasWidth = 1U << 10U;
constexpr std::uint32_t hasHeight = 1U << 11U;
constexpr std::uint32_t sourceShift = 12;
constexpr std::uint32_t stateRemove = 0;
constexpr std::uint32_t stateAdd = 1;

/// The server's coordinates are 16 bits wide.
int roundedCoordinate(double value) {
    return static_cast<int>(std::clamp(std::round(value), -32768.0, 32767.0));
}

/// Whether a window that is there now did not go where it was asked to. One that keeps to whole character cells went,
/// and may have been there before.
bool hasIgnored(const PixelRect& start, const PixelRect& target, const PixelRect& now) {
    constexpr int largestCell = 64;
    const bool isOfThatSize =
        std::abs(now.width - target.width) < largestCell && std::abs(now.height - target.height) < largestCell;
    return now.x != target.x || now.y != target.y || (now == start && !isOfThatSize);
}

std::uint32_t word(int value) {
    return static_cast<std::uint32_t>(value);
}

} // namespace

WindowMover::WindowMover(Connection& connection, const Atoms& atoms, WindowManagerPeer& windowManager)
    : connection_(connection),
      atoms_(atoms),
      windowManager_(windowManager),
      subscription_(connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); })) {}

void WindowMover::askAhead(const WindowRef& window) {
    takeAhead(nullptr);
    if (window && window->exists && !held_ && !movement_) {
        if (isReadingKnown_ && readWindow_ == window) {
            ahead_.emplace(AheadRequest{.window = window, .request = PlaceRequest{connection_, window->id}});
        } else {
            ahead_.emplace(AheadRequest{.window = window, .request = FrameRequest{connection_, atoms_, window->id}});
        }
    }
}

void WindowMover::dragHasEnded() {
    if (ahead_) {
        ahead_->isLate = true;
    }
}

bool WindowMover::isResize(const xcb_generic_event_t& event) const {
    if (typeOf(event) != XCB_CONFIGURE_NOTIFY || !readWindow_) {
        return false;
    }
    const auto& notify = as<xcb_configure_notify_event_t>(event);
    const PixelRect client = clientIn(reading_.frame, reading_.decoration, reading_.shadow);
    return notify.window == readWindow_->id && (notify.width != client.width || notify.height != client.height);
}

std::optional<PixelRect> WindowMover::read(const WindowRef& window) {
    sendHeldPosition();
    std::optional<FrameReading> reading;
    if (movement_ && movement_->window == window) {
        reading = readArrived();
    } else {
        reading = ask(window);
    }
    return reading ? std::optional{reading->frame} : std::nullopt;
}

/// Reads the moving window once it has arrived, sent again where it was held in a tile or has another decoration now
/// than its size was reckoned with.
std::optional<FrameReading> WindowMover::readArrived() {
    const WindowRef window = movement_->window;
    const PixelRect target = movement_->target;
    const auto isOnItsWay = [&](const std::optional<FrameReading>& now) {
        return now && !now->isHeld() && now->frame != target;
    };
    Movement movement = *std::exchange(movement_, std::nullopt);
    auto reading = readAtEndOf(movement);
    if (isOnItsWay(reading) && !windowManager_.hasReached(movement.checkpoint) &&
        hasIgnored(movement.start, target, reading->frame)) {
        leaveTile(*window);
        send(window, *reading, target);
        movement = *std::exchange(movement_, std::nullopt);
        reading = readAtEndOf(movement);
    }
    if (isOnItsWay(reading) && (reading->decoration != movement.decoration || reading->shadow != movement.shadow)) {
        send(window, *reading, target);
        reading = readAtEndOf(*std::exchange(movement_, std::nullopt));
    }
    return reading;
}

AXError WindowMover::setPosition(const WindowRef& window, CGPoint position) {
    if (held_ && held_->window != window) {
        sendHeldPosition();
    }
    const AXError error = prepare(window, &FrameReading::mayMove);
    if (error == kAXErrorSuccess) {
        held_ = HeldPosition{window, position};
    }
    return error;
}

AXError WindowMover::setSize(const WindowRef& window, CGSize size) {
    if (held_ && held_->window != window) {
        sendHeldPosition();
    }
    if (const AXError error = prepare(window, &FrameReading::mayResize); error != kAXErrorSuccess) {
        return error;
    }
    const PixelRect current = currentFrame(window, reading_);
    const CGPoint origin =
        held_ ? held_->position : CGPoint{static_cast<double>(current.x), static_cast<double>(current.y)};
    held_.reset();
    const int x = roundedCoordinate(origin.x);
    const int y = roundedCoordinate(origin.y);
    send(window, reading_,
         {.x = x,
          .y = y,
          .width = std::max(roundedCoordinate(origin.x + size.width) - x, 1),
          .height = std::max(roundedCoordinate(origin.y + size.height) - y, 1)});
    return kAXErrorSuccess;
}

void WindowMover::endTurn() {
    takeAhead(nullptr);
    sendHeldPosition();
    isReadingCurrent_ = false;
    releasedFrom_ = {};
    if (movement_ && std::chrono::steady_clock::now() > movement_->deadline) {
        movement_.reset();
    }
}

void WindowMover::handle(const xcb_generic_event_t& event) {
    if (typeOf(event) == XCB_CONFIGURE_NOTIFY) {
        hasChanged_ = hasChanged_ || as<xcb_configure_notify_event_t>(event).window == awaited_;
    } else if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
        const auto& notify = as<xcb_property_notify_event_t>(event);
        if (isReadFrom(notify.atom, atoms_)) {
            hasChanged_ = hasChanged_ || notify.window == awaited_;
            isReadingKnown_ = isReadingKnown_ && notify.window != readWindow_->id;
            if (ahead_ && notify.window == ahead_->window->id) {
                ahead_->isOutdated = true;
            }
        }
    } else if (typeOf(event) == XCB_DESTROY_NOTIFY) {
        hasChanged_ = hasChanged_ || as<xcb_destroy_notify_event_t>(event).window == awaited_;
    }
}

void WindowMover::sendHeldPosition() {
    const auto held = std::exchange(held_, std::nullopt);
    if (!held || !held->window->exists || (!hasReadingOf(held->window) && !ask(held->window))) {
        return;
    }
    PixelRect target = currentFrame(held->window, reading_);
    target.x = roundedCoordinate(held->position.x);
    target.y = roundedCoordinate(held->position.y);
    send(held->window, reading_, target);
}

void WindowMover::send(const WindowRef& window, const FrameReading& reading, PixelRect target) {
    const PixelRect current = currentFrame(window, reading);
    if (target == current) {
        return;
    }
    const Extents& decoration = reading.decoration;
    const Extents& shadow = reading.shadow;
    // The position is the outer frame's, the size the client's; both include the shadows, which are the client's own.
    // All in one message: two would show the frame in between.
    std::uint32_t flags = gravityNorthWest | sourcePager << sourceShift;
    flags |= target.x != current.x || target.y != current.y || reading.mayMove ? hasX | hasY : 0U;
    flags |= target.width != current.width || target.height != current.height || reading.mayResize
                 ? hasWidth | hasHeight
                 : 0U;
    const PixelRect client = clientIn(target, decoration, shadow);
    windowManager_.send(window->id, atoms_.netMoveResizeWindow,
                        {flags, word(target.x - shadow.left), word(target.y - shadow.top),
                         word(std::max(client.width, 1)), word(std::max(client.height, 1))});
    movement_ = Movement{.window = window,
                         .start = current,
                         .target = target,
                         .decoration = decoration,
                         .shadow = shadow,
                         .releasedFrom = std::exchange(releasedFrom_, {}),
                         .checkpoint = windowManager_.requestCheckpoint(),
                         .deadline = std::chrono::steady_clock::now() + patience};
    xcb_flush(connection_.xcb());
    // Extents and permissions stay; the frame is now where the movement goes.
    isReadingCurrent_ = false;
}

PixelRect WindowMover::currentFrame(const WindowRef& window, const FrameReading& reading) const {
    return movement_ && movement_->window == window ? movement_->target : reading.frame;
}

/// Makes sure that a reading of the window from this turn is there and lets it be moved or resized as asked.
AXError WindowMover::prepare(const WindowRef& window, bool FrameReading::*permission) {
    if (!window->exists) {
        return kAXErrorInvalidUIElement;
    }
    if (!windowManager_.placesWindows()) {
        return kAXErrorCannotComplete;
    }
    if (!hasReadingOf(window) && !ask(window)) {
        return kAXErrorInvalidUIElement;
    }
    const FrameReading before = reading_;
    if (before.isHeld()) {
        // Moves are ignored in these states, and the decoration and the permissions are others without them: wait until
        // the state is off.
        setStates(*window, before, stateRemove);
        movement_.reset();
        if (!readAtEndOf({.window = window,
                          .checkpoint = windowManager_.requestCheckpoint(),
                          .deadline = std::chrono::steady_clock::now() + patience})) {
            return kAXErrorInvalidUIElement;
        }
        releasedFrom_ = before.isFullscreen ? HeldState::fullscreen : HeldState::maximized;
    }
    if (!reading_.isHeld() && reading_.*permission) {
        return kAXErrorSuccess;
    }
    if (before.isHeld() && !reading_.isHeld()) {
        // A refused write leaves the window as it was.
        setStates(*window, before, stateAdd);
        isReadingCurrent_ = false;
    }
    return kAXErrorCannotComplete;
}

void WindowMover::setStates(const Window& window, const FrameReading& states, std::uint32_t action) {
    if (states.isFullscreen) {
        windowManager_.send(window.id, atoms_.netWindowState,
                            {action, atoms_.netWindowStateFullscreen, 0, sourcePager, 0});
    }
    const xcb_atom_t vertically = states.isMaximizedVertically ? atoms_.netWindowStateMaximizedVertically : 0;
    const xcb_atom_t horizontally = states.isMaximizedHorizontally ? atoms_.netWindowStateMaximizedHorizontally : 0;
    if (vertically != 0 || horizontally != 0) {
        windowManager_.send(window.id, atoms_.netWindowState,
                            {action, vertically != 0 ? vertically : horizontally,
                             vertically != 0 ? horizontally : xcb_atom_t{0}, sourcePager, 0});
    }
}

/// KWin holds a window that was snapped to an edge in a tile, shows no state of that and ignores moves, until the
/// window is maximized another way; taken back at once, that is never seen.
void WindowMover::leaveTile(const Window& window) {
    const FrameReading vertically{.isMaximizedVertically = true};
    setStates(window, vertically, stateAdd);
    setStates(window, vertically, stateRemove);
}

/// Reads the window as it is now and remembers the reading for this turn; none when it is gone.
std::optional<FrameReading> WindowMover::ask(const WindowRef& window) {
    isReadingCurrent_ = false;
    if (!window->exists) {
        return std::nullopt;
    }
    auto reading = takeAhead(window);
    if (!reading) {
        reading = FrameRequest{connection_, atoms_, window->id}.take();
        if (reading) {
            remember(window, *reading);
        }
        connection_.dispatchQueuedEvents();
    }
    // The answer may be about a later window of the same id; the end of this one comes before it.
    if (!reading || !window->exists) {
        return std::nullopt;
    }
    isReadingCurrent_ = true;
    return reading;
}

/// What was asked ahead of that window; what was asked of another is taken off the connection and forgotten.
std::optional<FrameReading> WindowMover::takeAhead(const WindowRef& window) {
    if (!ahead_) {
        return std::nullopt;
    }
    const AheadRequest ahead = *std::exchange(ahead_, std::nullopt);
    const auto* whole = std::get_if<FrameRequest>(&ahead.request);
    auto reading = whole != nullptr ? whole->take() : std::get<PlaceRequest>(ahead.request).take(reading_);
    if (!reading || ahead.window != window) {
        return std::nullopt;
    }
    const bool isOtherSize =
        reading->frame.width != reading_.frame.width || reading->frame.height != reading_.frame.height;
    if (ahead.isLate && readWindow_ == window && isOtherSize) {
        reading = reading_;
    } else if (whole != nullptr) {
        remember(window, *reading);
        isReadingKnown_ = !ahead.isOutdated;
    } else if (isOtherSize) {
        // What is believed of a shadow depends on the size.
        return std::nullopt;
    } else {
        reading_ = *reading;
    }
    connection_.dispatchQueuedEvents();
    return isReadingKnown_ || ahead.isLate ? reading : std::nullopt;
}

/// The events that came along with the reading are to be dispatched after this: they may tell that it has changed.
void WindowMover::remember(const WindowRef& window, const FrameReading& reading) {
    readWindow_ = window;
    reading_ = reading;
    isReadingKnown_ = true;
}

/// Reads the window until it is at the movement's target, the window manager has answered or the time is up, whichever
/// comes first, and returns the last reading.
std::optional<FrameReading> WindowMover::readAtEndOf(const Movement& movement) {
    awaited_ = movement.window->id;
    std::optional<FrameReading> reading;
    for (;;) {
        // Looked at before reading: only then the reading shows what the answer follows.
        const bool hasAnswered = windowManager_.hasReached(movement.checkpoint);
        hasChanged_ = false;
        reading = ask(movement.window);
        // The deadline is asked for each time: a window that never stops changing must not keep anybody waiting.
        if (!reading || hasEnded(movement, *reading, hasAnswered) ||
            std::chrono::steady_clock::now() >= movement.deadline) {
            break;
        }
        bool isInTime = true;
        while (isInTime && !hasChanged_ && (hasAnswered || !windowManager_.hasReached(movement.checkpoint))) {
            isInTime = connection_.waitForEvents(movement.deadline);
        }
    }
    awaited_ = XCB_WINDOW_NONE;
    return reading;
}

bool WindowMover::hasEnded(const Movement& movement, const FrameReading& now, bool hasAnswered) {
    switch (movement.releasedFrom) {
    case HeldState::none:
        return hasAnswered || now.frame == movement.target;
    case HeldState::maximized:
        // It may get its decoration while it moves.
        return hasAnswered;
    case HeldState::fullscreen:
        // metacity decorates it some time after it has answered.
        return hasAnswered && (now.decoration != Extents{} || now.shadow != Extents{});
    }
    return true;
}

} // namespace brisk::x11
