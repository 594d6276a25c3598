#pragma once

#include "platform/global_event_monitor.h"
#include "platform/main_queue.h"
#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"
#include "platform/x11/displays.h"
#include "platform/x11/drag_pace.h"
#include "platform/x11/pointer.h"
#include "platform/x11/pointer_look.h"
#include "platform/x11/queue_turns.h"
#include "platform/x11/raw_input.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace brisk::x11 {

/// The left mouse button and the pointer, watched through the server's raw input events: these come whoever has grabbed
/// the pointer, during every window manager's own moves. Modifiers are asked for only while the button is down, and
/// motion only until the pointer sets out: from then on it is looked at now and then, until it rests again. An idle
/// Brisk is not woken by a moving mouse, and one that follows a drag not a thousand times a second.
///
/// At a press the active window is still the old one. The press, with everything after it, is reported once the window
/// under the pointer has become active, and after a short time in any case.
///
/// Beyond the pointer's motion a drag is reported when Shift changes, when the windows or the displays do, with Shift
/// when its window's size does, and a release that the server never told is reported without Shift: who follows the
/// gesture then finds out what is gone.
///
/// Expects the root window and the displays to be followed.
class EventMonitor final : public GlobalEventMonitor {
public:
    /// What the reader of a drag report is going to ask the server can travel along with the report's own questions.
    struct ReadAhead {
        /// Called before the round trip of a report with Shift.
        std::function<void()> ask;
        /// Called after it, when the button was released before the answers.
        std::function<void()> dragHasEnded;
        /// Whether an event tells that what was read last has changed, so that the drag is to be reported.
        std::function<bool(const xcb_generic_event_t&)> isChange;
    };

    /// Without `pointerLook` the mouse cannot be watched.
    EventMonitor(Connection& connection, const Atoms& atoms, Displays& displays, MainQueue& queue,
                 PointerLook* pointerLook, ReadAhead readAhead);
    EventMonitor(const EventMonitor&) = delete;
    EventMonitor& operator=(const EventMonitor&) = delete;
    ~EventMonitor() override;

    std::optional<Token> addGlobalMonitorForEventsMatchingMask(NSEventMask mask, Handler handler) override;
    void removeMonitor(Token token) override;
    void ignoreRestOfPress() override;
    void ignoreMotionWithin(const CGRect& region) override;
    CGPoint mouseLocation() override;

    /// Takes in what a look at the pointer has shown, if one has.
    void readLook();

private:
    using Clock = DragPace::Clock;

    struct Monitor {
        Token token;
        NSEventMask mask;
        Handler handler;
    };
    /// What was heard and not yet dealt with.
    struct Notice {
        enum class Kind : std::uint8_t { press, release, drag, modifiers };
        Kind kind;
        /// The physical button of a press or release, the modifiers' new state.
        std::uint32_t detail = 0;
    };
    /// From the left button's press to its release.
    struct Drag {
        std::uint32_t button = 0;
        xcb_window_t topLevel = XCB_WINDOW_NONE;
        std::uint16_t modifiers = 0;
        /// The press is held back until then.
        Clock::time_point heldUntil;
        bool isActiveWindowStale = true;
        bool isReported = false;
        DragPace pace;
        /// The pointer is looked at as long as its motion is not heard.
        bool isMotionHeard = true;
        /// Whether a look is to be asked for, once who was told of the drag has said what it has no interest in.
        bool isLookDue = false;
    };

    void hear(const xcb_generic_event_t& event);
    void hearRootProperty(xcb_atom_t property);
    void hearInput(const RawInput::Event& event);
    bool isShiftHeld() const;
    void hearMotion(bool isHeard);
    void note(Notice notice);
    void noteMotion();
    void noteDrag();

    bool work();
    bool dealWithNext();
    bool endHold();
    bool mustWait(const Notice& notice);
    void deal(const Notice& notice);
    void begin(std::uint32_t button);
    void change(std::uint16_t modifiers);
    void end(std::uint16_t modifiers);
    void forgetDrag();
    std::optional<CGPoint> readDrag();
    void reportDrag();
    void askForLook();
    CGPoint toAppKit(const PointerReading& pointer);
    void report(NSEventType type, std::uint16_t modifiers);

    Connection& connection_;
    const Atoms& atoms_;
    Displays& displays_;
    PointerLook* pointerLook_;
    ReadAhead readAhead_;
    std::vector<Monitor> monitors_;
    Token lastToken_ = 0;

    RawInput input_;
    std::deque<Notice> notices_;
    std::optional<Drag> drag_;
    /// The pointer as read for the last report of a drag, until it is asked for.
    std::optional<CGPoint> pointerOfReport_;
    QueueTurns turns_;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
