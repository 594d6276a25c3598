#pragma once

#include "platform/x11/connection.h"
#include "platform/x11/pointer.h"

#include <xcb/sync.h>

#include <chrono>
#include <memory>
#include <optional>

namespace brisk::x11 {

/// Where the pointer is some time from now, asked of the server beforehand: it keeps the time itself (X Synchronization
/// Extension), so that this program wakes once, with the answer, where a timer and a question would wake it twice. On a
/// connection of its own, since a connection that waits for the server's clock has nothing else done. Main thread only.
class PointerLook {
public:
    /// Connects to the display named as `Connection::open` does. Null when that fails, or the server has no such clock.
    static std::unique_ptr<PointerLook> open(const char* display);

    PointerLook(const PointerLook&) = delete;
    PointerLook& operator=(const PointerLook&) = delete;
    ~PointerLook() = default;

    /// Readable when `take` is to be called.
    int fileDescriptor() const { return connection_->fileDescriptor(); }
    bool isBroken() const { return connection_->isBroken(); }

    /// Asks for the pointer in `delay`, sent at once; where an answer is still to come, that one will do.
    void ask(std::chrono::milliseconds delay);
    /// Nobody wants the answer that is to come.
    void forget() { isWanted_ = false; }
    /// The answer, once, if it has come. Never waits.
    std::optional<PointerReading> take();

private:
    PointerLook(std::unique_ptr<Connection> connection, xcb_sync_counter_t clock);

    std::unique_ptr<Connection> connection_;
    xcb_sync_counter_t clock_;
    std::optional<xcb_query_pointer_cookie_t> asked_;
    bool isWanted_ = false;
};

} // namespace brisk::x11
