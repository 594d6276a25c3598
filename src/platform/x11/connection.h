#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <list>
#include <memory>

namespace brisk::x11 {

/// Frees what xcb allocates with malloc: replies, events, errors.
struct Free {
    void operator()(void* p) const { std::free(p); }
};
/// A reply, or null where the request failed. Every failure is expected: what a request names may vanish before the
/// server reads it. Take replies as `Reply<xcb_x_reply_t> reply{xcb_x_reply(connection, cookie, nullptr)}`.
template <class T>
using Reply = std::unique_ptr<T, Free>;
using Event = Reply<xcb_generic_event_t>;

/// A connection to the X server of Brisk's own, not the toolkit's, and the road of its events. Main thread only.
///
/// The main loop calls `dispatchEvents` when `fileDescriptor` is readable, and `dispatchQueuedEvents` and `flush` each
/// time before it sleeps: a reply that was waited for brings earlier events along, and the descriptor does not signal
/// those again.
class Connection {
public:
    using EventHandler = std::function<void(const xcb_generic_event_t&)>;

    /// Withdraws its handler when it goes.
    class Subscription {
    public:
        Subscription() = default;
        Subscription(Connection& connection, std::list<EventHandler>::iterator handler);
        Subscription(Subscription&& other) noexcept;
        Subscription& operator=(Subscription&& other) noexcept;
        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;
        ~Subscription();

    private:
        Connection* connection_ = nullptr;
        std::list<EventHandler>::iterator handler_;
    };

    /// Connects to the display named, as the DISPLAY environment variable has it where null; null when that fails.
    static std::unique_ptr<Connection> open(const char* display = nullptr);

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    xcb_connection_t* xcb() const { return connection_; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    int screenNumber() const { return screenNumber_; }
    int fileDescriptor() const;
    /// True once the server is gone; every request from then on is a no-op and every reply null.
    bool isBroken() const;

    /// Whether the server has the extension. A request of one that it lacks would make xcb close the connection.
    bool has(xcb_extension_t& extension) const;

    /// The atom of that name, interned on first use and remembered; names must be string literals' lifetime or longer.
    xcb_atom_t atom(const char* name);

    /// Calls `handler` with every event, after the handlers added before it, until the subscription goes. A handler may
    /// be called while another component waits for a reply: it takes notice and schedules, it does not act.
    [[nodiscard]] Subscription addEventHandler(EventHandler handler);

    /// Hands the events received so far to the handlers, those of one read of the socket, and flushes requests. Never
    /// waits, and ends however fast events come.
    void dispatchEvents();
    /// The same for events that xcb has read already, without reading the socket: after a reply, so that what the
    /// server said before it is known. Returns whether there were any.
    bool dispatchQueuedEvents();
    /// Sends the requests made so far. When xcb writes it reads as well, and the descriptor does not announce what it
    /// has read: that is handed to the handlers, too. Returns whether there was anything.
    bool flush();
    /// Flushes requests, waits for events until `deadline` at most and hands those received to the handlers; false when
    /// the time is up, or the server is gone.
    bool waitForEvents(std::chrono::steady_clock::time_point deadline);
    /// Hands one event, taken from xcb by a component that waited for it, to the handlers.
    void dispatch(const xcb_generic_event_t& event);

private:
    Connection(xcb_connection_t* connection, int screenNumber);

    xcb_connection_t* connection_;
    int screenNumber_;
    const xcb_screen_t* screen_;
    std::list<EventHandler> handlers_;
    struct NamedAtom;
    std::list<NamedAtom> atoms_;
};

} // namespace brisk::x11
