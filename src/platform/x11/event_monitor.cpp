#include "platform/x11/event_monitor.h"

#include "platform/x11/events.h"

#include <xcb/res.h>

#include <algorithm>
#include <utility>

namespace brisk::x11 {
namespace {

/// A report that is this little early is not worth a sleep.
constexpr std::chrono::milliseconds dragSlack{1};
/// How long a press waits for its window to become active. Window managers take 3 to 9 ms; a press on what never
/// becomes active is reported this late.
constexpr std::chrono::milliseconds longestHold{150};

NSEventModifierFlags flagsOf(std::uint16_t modifiers) {
    // Which bits are Option and Command is up to the keyboard map, and no drag depends on them.
    NSEventModifierFlags flags = 0;
    flags |= (modifiers & XCB_MOD_MASK_SHIFT) != 0 ? NSEventModifierFlagShift : 0U;
    flags |= (modifiers & XCB_MOD_MASK_CONTROL) != 0 ? NSEventModifierFlagControl : 0U;
    return flags;
}

} // namespace

EventMonitor::EventMonitor(Connection& connection, const Atoms& atoms, Displays& displays, MainQueue& queue,
                           PointerLook* pointerLook, ReadAhead readAhead)
    : connection_(connection),
      atoms_(atoms),
      displays_(displays),
      pointerLook_(pointerLook),
      readAhead_(std::move(readAhead)),
      input_(connection),
      turns_(queue, [this] { return work(); }) {}

EventMonitor::~EventMonitor() {
    if (!monitors_.empty()) {
        input_.select(RawInput::Selection::nothing);
    }
}

std::optional<GlobalEventMonitor::Token> EventMonitor::addGlobalMonitorForEventsMatchingMask(NSEventMask mask,
                                                                                             Handler handler) {
    if (monitors_.empty()) {
        // The first press is not to wait for it.
        xcb_prefetch_extension_data(connection_.xcb(), &xcb_res_id);
        if (pointerLook_ == nullptr || !input_.isAvailable()) {
            return std::nullopt;
        }
        subscription_ = connection_.addEventHandler([this](const xcb_generic_event_t& event) { hear(event); });
        input_.select(RawInput::Selection::buttons);
    }
    monitors_.push_back({.token = ++lastToken_, .mask = mask, .handler = std::move(handler)});
    return lastToken_;
}

void EventMonitor::removeMonitor(Token token) {
    if (std::erase_if(monitors_, [&](const Monitor& monitor) { return monitor.token == token; }) == 0 ||
        !monitors_.empty()) {
        return;
    }
    forgetDrag();
    notices_.clear();
    input_.select(RawInput::Selection::nothing);
    subscription_ = {};
}

void EventMonitor::ignoreRestOfPress() {
    // A press that is still held back is another one.
    if (drag_ && drag_->isReported) {
        forgetDrag();
    }
}

void EventMonitor::ignoreMotionWithin(const CGRect& region) {
    if (drag_) {
        drag_->pace.ignoreMotionWithin(region);
    }
}

CGPoint EventMonitor::mouseLocation() {
    if (const auto readAlong = std::exchange(pointerOfReport_, std::nullopt)) {
        return *readAlong;
    }
    const auto pointer = readPointer(connection_);
    return pointer ? toAppKit(*pointer) : CGPoint{};
}

CGPoint EventMonitor::toAppKit(const PointerReading& pointer) {
    // The lower left corner of the pointer's pixel: half-open rectangles then contain exactly the pixels they cover,
    // the topmost row of a display included.
    return displays_.toAppKit({.x = static_cast<double>(pointer.rootX), .y = static_cast<double>(pointer.rootY + 1)});
}

void EventMonitor::hear(const xcb_generic_event_t& event) {
    if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
        const auto& property = as<xcb_property_notify_event_t>(event);
        if (property.window == connection_.root()) {
            hearRootProperty(property.atom);
        }
    } else if (displays_.isChange(event) || (isShiftHeld() && readAhead_.isChange(event))) {
        noteDrag();
    } else if (const auto input = input_.eventIn(event)) {
        hearInput(*input);
    }
}

void EventMonitor::hearInput(const RawInput::Event& event) {
    switch (event.kind) {
    case RawInput::Event::Kind::press:
        note({.kind = Notice::Kind::press, .detail = event.detail});
        break;
    case RawInput::Event::Kind::release:
        if (drag_ && !drag_->isMotionHeard) {
            // What it has moved since the last look.
            noteDrag();
        }
        note({.kind = Notice::Kind::release, .detail = event.detail});
        break;
    case RawInput::Event::Kind::modifiers:
        note({.kind = Notice::Kind::modifiers, .detail = event.detail});
        break;
    case RawInput::Event::Kind::motion:
        noteMotion();
        break;
    }
}

void EventMonitor::hearRootProperty(xcb_atom_t property) {
    const bool isActiveWindow = property == atoms_.netActiveWindow;
    if (!drag_ || (!isActiveWindow && property != atoms_.netClientList)) {
        return;
    }
    if (drag_->isReported) {
        noteDrag();
    } else if (isActiveWindow) {
        drag_->isActiveWindowStale = true;
        turns_.takeNext();
    }
}

/// Without it nobody reads the window.
bool EventMonitor::isShiftHeld() const {
    return drag_ && (drag_->modifiers & XCB_MOD_MASK_SHIFT) != 0;
}

void EventMonitor::hearMotion(bool isHeard) {
    if (std::exchange(drag_->isMotionHeard, isHeard) != isHeard) {
        input_.select(isHeard ? RawInput::Selection::everything : RawInput::Selection::buttonsAndModifiers);
    }
}

void EventMonitor::note(Notice notice) {
    notices_.push_back(notice);
    turns_.takeNext();
}

/// A mouse that has begun to move is heard no more, but looked at until it rests.
void EventMonitor::noteMotion() {
    if (drag_ && drag_->isMotionHeard) {
        hearMotion(false);
        noteDrag();
    }
}

/// Everything since the last report counts as one drag, whatever moved.
void EventMonitor::noteDrag() {
    if (drag_ && (notices_.empty() || notices_.back().kind != Notice::Kind::drag)) {
        note({.kind = Notice::Kind::drag});
    }
}

void EventMonitor::readLook() {
    const auto pointer = pointerLook_->take();
    if (!pointer || !drag_ || drag_->isMotionHeard) {
        return;
    }
    drag_->pace.look(Clock::now(), toAppKit(*pointer));
    if (drag_->pace.isAtRest()) {
        // The report reads the pointer after that, so that no motion falls in between.
        hearMotion(true);
        noteDrag();
    } else if (drag_->pace.isReportDue() || (pointer->state & XCB_BUTTON_MASK_1) == 0) {
        noteDrag();
    } else {
        askForLook();
    }
}

/// Deals with one thing: what who is told of it has lost interest in is then never a later press. Returns whether more
/// is left.
bool EventMonitor::work() {
    return dealWithNext() && (!notices_.empty() || (drag_ && (!drag_->isReported || drag_->isLookDue)));
}

/// False when there is nothing to deal with yet.
bool EventMonitor::dealWithNext() {
    if (drag_ && !drag_->isReported) {
        return endHold();
    }
    if (drag_ && std::exchange(drag_->isLookDue, false)) {
        askForLook();
    }
    if (notices_.empty() || mustWait(notices_.front())) {
        return false;
    }
    const Notice notice = notices_.front();
    notices_.pop_front();
    deal(notice);
    return true;
}

/// Reports the press that is held back, if it is time; whether it was.
bool EventMonitor::endHold() {
    const bool isActive =
        std::exchange(drag_->isActiveWindowStale, false) && isActiveWindowIn(connection_, atoms_, drag_->topLevel);
    if (!isActive && Clock::now() < drag_->heldUntil) {
        turns_.takeAt(drag_->heldUntil);
        return false;
    }
    turns_.cancelTimer();
    drag_->isReported = true;
    report(NSEventType::leftMouseDown, drag_->modifiers);
    return true;
}

/// A drag waits for its turn as long as nothing comes after it.
bool EventMonitor::mustWait(const Notice& notice) {
    if (notice.kind != Notice::Kind::drag || notices_.size() > 1 || !drag_) {
        return false;
    }
    const auto turn = drag_->pace.nextReport();
    if (Clock::now() >= turn - dragSlack) {
        return false;
    }
    turns_.takeAt(turn);
    return true;
}

void EventMonitor::deal(const Notice& notice) {
    switch (notice.kind) {
    case Notice::Kind::press:
        if (drag_ && drag_->button == notice.detail) {
            end(0);
        }
        // Who was told of that release may have stopped watching.
        if (!drag_ && !monitors_.empty()) {
            begin(notice.detail);
        }
        break;
    case Notice::Kind::release:
        if (drag_ && drag_->button == notice.detail) {
            end(drag_->modifiers);
        }
        break;
    case Notice::Kind::drag:
        if (drag_) {
            reportDrag();
        }
        break;
    case Notice::Kind::modifiers:
        if (drag_) {
            change(static_cast<std::uint16_t>(notice.detail));
        }
        break;
    }
}

void EventMonitor::begin(std::uint32_t button) {
    // Asked for before the pointer is read, so that no change of the modifiers falls in between.
    input_.select(RawInput::Selection::everything);
    const auto press = readPress(connection_, atoms_);
    connection_.dispatchQueuedEvents();
    // Raw events know the physical button. Which one is the left one the state tells, as long as it is still that of
    // the press; after a quick click the first button is taken for it, as on most mice.
    const bool isStateOfPress = std::ranges::none_of(notices_, [](const Notice& notice) {
        return notice.kind == Notice::Kind::press || notice.kind == Notice::Kind::release;
    });
    const bool isLeft = press && isStateOfPress ? (press->pointer.state & XCB_BUTTON_MASK_1) != 0 : button == 1;
    if (!press || !isLeft || press->isOwn) {
        input_.select(RawInput::Selection::buttons);
        return;
    }
    const bool isClear = press->isActive || press->pointer.topLevel == XCB_WINDOW_NONE;
    drag_ = Drag{
        .button = button,
        .topLevel = press->pointer.topLevel,
        .modifiers = press->pointer.state,
        .heldUntil = Clock::now() + (isClear ? std::chrono::milliseconds(0) : longestHold),
    };
}

/// Where the pointer is, if the drag goes on.
std::optional<CGPoint> EventMonitor::readDrag() {
    if (isShiftHeld()) {
        readAhead_.ask();
    }
    const auto pointer = readPointer(connection_);
    // The release may have been told just before the answer.
    connection_.dispatchQueuedEvents();
    const bool isReleaseHeard = std::ranges::any_of(notices_, [&](const Notice& notice) {
        return notice.kind == Notice::Kind::release && notice.detail == drag_->button;
    });
    if (pointer && (pointer->state & XCB_BUTTON_MASK_1) == 0 && !isReleaseHeard) {
        end(0);
        return std::nullopt;
    }
    if (isReleaseHeard) {
        readAhead_.dragHasEnded();
    }
    turns_.cancelTimer();
    return pointer ? std::optional(toAppKit(*pointer)) : std::nullopt;
}

void EventMonitor::reportDrag() {
    const auto pointer = readDrag();
    if (!pointer) {
        return;
    }
    drag_->pace.report(Clock::now(), *pointer);
    drag_->isLookDue = !drag_->isMotionHeard;
    pointerOfReport_ = pointer;
    report(NSEventType::leftMouseDragged, drag_->modifiers);
}

void EventMonitor::askForLook() {
    if (const auto delay = drag_->pace.timeToNextLook()) {
        pointerLook_->ask(*delay);
    } else {
        pointerLook_->forget();
    }
}

void EventMonitor::change(std::uint16_t modifiers) {
    const bool isShiftChange = ((drag_->modifiers ^ modifiers) & XCB_MOD_MASK_SHIFT) != 0;
    drag_->modifiers = modifiers;
    if (isShiftChange) {
        reportDrag();
    }
}

void EventMonitor::end(std::uint16_t modifiers) {
    forgetDrag();
    report(NSEventType::leftMouseUp, modifiers);
}

void EventMonitor::forgetDrag() {
    drag_.reset();
    pointerLook_->forget();
    pointerOfReport_.reset();
    turns_.cancelTimer();
    input_.select(RawInput::Selection::buttons);
}

void EventMonitor::report(NSEventType type, std::uint16_t modifiers) {
    // A handler may remove its monitor.
    const std::vector<Monitor> monitors = monitors_;
    for (const Monitor& monitor : monitors) {
        if ((monitor.mask & maskOf(type)) != 0) {
            monitor.handler(type, flagsOf(modifiers));
        }
    }
}

} // namespace brisk::x11
