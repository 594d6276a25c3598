#include "platform/x11/event_monitor.h"

#include "platform/x11/events.h"
#include "platform/x11/xkb.h"

#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace brisk::x11 {
namespace {

/// A display shows no more than 120 pictures a second, and each report costs its reader a look at the window.
constexpr std::chrono::milliseconds dragInterval{8};
/// Motion that is this little early for its report is not worth a sleep.
constexpr std::chrono::milliseconds dragSlack{1};
/// How long a press waits for its window to become active. Window managers take 3 to 9 ms; a press on what never
/// becomes active is reported this late.
constexpr std::chrono::milliseconds longestHold{150};
/// Buttons from here on are the wheel's.
constexpr std::uint32_t firstWheelButton = 4;

NSEventModifierFlags flagsOf(std::uint16_t modifiers) {
    // Which bits are Option and Command is up to the keyboard map, and no drag depends on them.
    NSEventModifierFlags flags = 0;
    flags |= (modifiers & XCB_MOD_MASK_SHIFT) != 0 ? NSEventModifierFlagShift : 0U;
    flags |= (modifiers & XCB_MOD_MASK_CONTROL) != 0 ? NSEventModifierFlagControl : 0U;
    return flags;
}

} // namespace

EventMonitor::EventMonitor(Connection& connection, const Atoms& atoms, Displays& displays, MainQueue& queue,
                           ReadAhead readAhead)
    : connection_(connection), atoms_(atoms), displays_(displays), queue_(queue), readAhead_(std::move(readAhead)) {}

EventMonitor::~EventMonitor() {
    if (!monitors_.empty()) {
        select(Selection::nothing);
    }
    stopTimer();
}

std::optional<GlobalEventMonitor::Token> EventMonitor::addGlobalMonitorForEventsMatchingMask(NSEventMask mask,
                                                                                             Handler handler) {
    if (monitors_.empty()) {
        if (!canWatch()) {
            return std::nullopt;
        }
        subscription_ = connection_.addEventHandler([this](const xcb_generic_event_t& event) { hear(event); });
        select(Selection::buttons);
    }
    monitors_.push_back({.token = ++lastToken_, .mask = mask, .handler = std::move(handler)});
    return lastToken_;
}

void EventMonitor::removeMonitor(Token token) {
    if (std::erase_if(monitors_, [&](const Monitor& monitor) { return monitor.token == token; }) == 0 ||
        !monitors_.empty()) {
        return;
    }
    select(Selection::nothing);
    subscription_ = {};
    notices_.clear();
    drag_.reset();
    pointerOfReport_.reset();
    stopTimer();
}

void EventMonitor::ignoreRestOfPress() {
    // A press that is still held back is another one.
    if (drag_ && drag_->isReported) {
        forgetDrag();
    }
}

CGPoint EventMonitor::mouseLocation() {
    const auto readAlong = std::exchange(pointerOfReport_, std::nullopt);
    const auto pointer = readAlong ? readAlong : readPointer(connection_);
    if (!pointer) {
        return {};
    }
    // The lower left corner of the pointer's pixel: half-open rectangles then contain exactly the pixels they cover,
    // the topmost row of a display included.
    return displays_.toAppKit({.x = static_cast<double>(pointer->rootX), .y = static_cast<double>(pointer->rootY + 1)});
}

/// Raw events that also come while another client has grabbed the pointer need version 2.1 of the input extension;
/// which modifiers were held at a release only the keyboard extension tells in time.
bool EventMonitor::canWatch() {
    xcb_connection_t* const xcb = connection_.xcb();
    for (xcb_extension_t* const extension : {&xcb_input_id, &xcb_xkb_id, &xcb_randr_id, &xcb_res_id}) {
        xcb_prefetch_extension_data(xcb, extension);
    }
    const auto* const input = xcb_get_extension_data(xcb, &xcb_input_id);
    const auto* const xkb = xcb_get_extension_data(xcb, &xcb_xkb_id);
    const auto* const randr = xcb_get_extension_data(xcb, &xcb_randr_id);
    if (input == nullptr || input->present == 0 || xkb == nullptr || xkb->present == 0) {
        return false;
    }
    const auto versionCookie = xcb_input_xi_query_version(xcb, 2, 2);
    const auto xkbCookie = xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const Reply<xcb_input_xi_query_version_reply_t> version{
        xcb_input_xi_query_version_reply(xcb, versionCookie, nullptr)};
    const Reply<xcb_xkb_use_extension_reply_t> xkbUse{xcb_xkb_use_extension_reply(xcb, xkbCookie, nullptr)};
    if (!version || std::pair<int, int>(version->major_version, version->minor_version) < std::pair(2, 1) || !xkbUse ||
        xkbUse->supported == 0) {
        return false;
    }
    inputExtension_ = input->major_opcode;
    xkbEvent_ = xkb->first_event;
    randrEvent_ = randr != nullptr && randr->present != 0 ? randr->first_event : std::uint8_t{0};
    return true;
}

void EventMonitor::select(Selection selection) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, .mask = 0};
    if (selection != Selection::nothing) {
        request.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    }
    if (selection == Selection::everything) {
        request.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    }
    xcb_input_xi_select_events(connection_.xcb(), connection_.root(), 1, &request.head);

    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = selection == Selection::everything ? XCB_XKB_STATE_PART_MODIFIER_STATE : 0;
    xcb_xkb_select_events_aux(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0,
                              &details);
}

void EventMonitor::hear(const xcb_generic_event_t& event) {
    const std::uint8_t type = typeOf(event);
    if (type == XCB_GE_GENERIC) {
        if (as<xcb_ge_generic_event_t>(event).extension == inputExtension_) {
            hearInput(event);
        }
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& property = as<xcb_property_notify_event_t>(event);
        if (property.window == connection_.root()) {
            hearRootProperty(property.atom);
        }
    } else if (type == XCB_CONFIGURE_NOTIFY) {
        if (as<xcb_configure_notify_event_t>(event).window == connection_.root()) {
            noteMotion();
        }
    } else if (type == xkbEvent_) {
        if (event.pad0 == XCB_XKB_STATE_NOTIFY) {
            note({.kind = Notice::Kind::modifiers, .detail = as<xcb_xkb_state_notify_event_t>(event).mods});
        }
    } else if (randrEvent_ != 0 &&
               (type == randrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == randrEvent_ + XCB_RANDR_NOTIFY)) {
        noteMotion();
    }
}

void EventMonitor::hearInput(const xcb_generic_event_t& event) {
    const std::uint16_t kind = as<xcb_ge_generic_event_t>(event).event_type;
    if (kind == XCB_INPUT_RAW_MOTION) {
        noteMotion();
        return;
    }
    const std::uint32_t button = as<xcb_input_raw_button_press_event_t>(event).detail;
    if (button >= firstWheelButton) {
        return;
    }
    if (kind == XCB_INPUT_RAW_BUTTON_PRESS) {
        note({.kind = Notice::Kind::press, .detail = button});
    } else if (kind == XCB_INPUT_RAW_BUTTON_RELEASE) {
        note({.kind = Notice::Kind::release, .detail = button});
    }
}

void EventMonitor::hearRootProperty(xcb_atom_t property) {
    const bool isActiveWindow = property == atoms_.netActiveWindow;
    if (!drag_ || (!isActiveWindow && property != atoms_.netClientList)) {
        return;
    }
    if (drag_->isReported) {
        noteMotion();
    } else if (isActiveWindow) {
        drag_->isActiveWindowStale = true;
        schedule();
    }
}

void EventMonitor::note(Notice notice) {
    notices_.push_back(notice);
    schedule();
}

/// Motion since the last report counts as one, whatever moved.
void EventMonitor::noteMotion() {
    if (drag_ && (notices_.empty() || notices_.back().kind != Notice::Kind::motion)) {
        notices_.push_back({.kind = Notice::Kind::motion});
        // Of a fast mouse nearly every motion comes before its turn: no turn of the queue for those.
        if (!mustWait(notices_.back())) {
            schedule();
        }
    }
}

void EventMonitor::schedule() {
    if (std::exchange(isScheduled_, true)) {
        return;
    }
    queue_.async([weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock()) {
            (*self)->work();
        }
    });
}

void EventMonitor::wakeAt(Clock::time_point time) {
    if (timer_) {
        return;
    }
    timer_ = queue_.asyncAfter(std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now()),
                               [weak = std::weak_ptr(self_)] {
                                   if (const auto self = weak.lock()) {
                                       (*self)->timer_ = nullptr;
                                       if (!(*self)->isScheduled_) {
                                           (*self)->work();
                                       }
                                   }
                               });
}

void EventMonitor::stopTimer() {
    if (timer_) {
        std::exchange(timer_, nullptr)->cancel();
    }
}

/// Deals with one thing a turn: who is told of it has a turn before the next, so that what it has lost interest in is
/// never a later press.
void EventMonitor::work() {
    // What is heard meanwhile is scheduled after who is told now.
    isScheduled_ = true;
    const bool hasDealt = dealWithNext();
    isScheduled_ = false;
    if (hasDealt && (!notices_.empty() || (drag_ && !drag_->isReported))) {
        schedule();
    }
}

/// False when there is nothing to deal with yet.
bool EventMonitor::dealWithNext() {
    if (drag_ && !drag_->isReported) {
        return endHold();
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
        wakeAt(drag_->heldUntil);
        return false;
    }
    stopTimer();
    drag_->isReported = true;
    report(NSEventType::leftMouseDown, drag_->modifiers);
    return true;
}

/// Motion waits for its turn as long as nothing comes after it.
bool EventMonitor::mustWait(const Notice& notice) {
    if (notice.kind != Notice::Kind::motion || notices_.size() > 1 || !drag_ ||
        Clock::now() >= nextDragReport_ - dragSlack) {
        return false;
    }
    wakeAt(nextDragReport_);
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
    case Notice::Kind::motion:
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
    select(Selection::everything);
    const auto press = readPress(connection_, atoms_);
    connection_.dispatchQueuedEvents();
    // Raw events know the physical button. Which one is the left one the state tells, as long as it is still that of
    // the press; after a quick click the first button is taken for it, as on most mice.
    const bool isStateOfPress = std::ranges::none_of(notices_, [](const Notice& notice) {
        return notice.kind == Notice::Kind::press || notice.kind == Notice::Kind::release;
    });
    const bool isLeft = press && isStateOfPress ? (press->pointer.state & XCB_BUTTON_MASK_1) != 0 : button == 1;
    if (!press || !isLeft || press->isOwn) {
        select(Selection::buttons);
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

void EventMonitor::reportDrag() {
    if ((drag_->modifiers & XCB_MOD_MASK_SHIFT) != 0) {
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
        return;
    }
    if (isReleaseHeard) {
        readAhead_.dragHasEnded();
    }
    pointerOfReport_ = pointer;
    // One interval after the other: a report that was late does not put off those that follow, which would otherwise
    // all wait when the mouse is no faster than the reports.
    const auto now = Clock::now();
    stopTimer();
    nextDragReport_ = std::clamp(nextDragReport_, now - dragInterval, now) + dragInterval;
    report(NSEventType::leftMouseDragged, drag_->modifiers);
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
    pointerOfReport_.reset();
    stopTimer();
    select(Selection::buttons);
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
