#include "platform/x11/desktop.h"

#include "platform/x11/events.h"

#include <utility>

namespace brisk::x11 {

std::unique_ptr<Desktop> Desktop::open(MainQueue& mainQueue, std::function<void()> explainTrust, const char* display) {
    auto connection = Connection::open(display);
    if (!connection) {
        return nullptr;
    }
    // Before anything is read: what changes after that is then told.
    follow(connection->xcb(), connection->root());
    return std::unique_ptr<Desktop>(
        new Desktop(std::move(connection), PointerLook::open(display), mainQueue, std::move(explainTrust)));
}

Desktop::Desktop(std::unique_ptr<Connection> connection, std::unique_ptr<PointerLook> pointerLook, MainQueue& mainQueue,
                 std::function<void()> explainTrust)
    : connection_(std::move(connection)),
      pointerLook_(std::move(pointerLook)),
      atoms_(*connection_),
      windowManager_(*connection_, atoms_),
      windowTracker_(*connection_, atoms_),
      displays_(*connection_, windowTracker_),
      windowMover_(*connection_, atoms_, windowManager_),
      accessibility_(mainQueue, windowManager_, windowTracker_, displays_, windowMover_, std::move(explainTrust)),
      workspace_(*connection_, windowManager_, windowTracker_),
      hotKeys_(*connection_, mainQueue),
      keyInput_(*connection_),
      nativeWindows_(*connection_, displays_),
      eventMonitor_(*connection_, atoms_, displays_, mainQueue, pointerLook_.get(),
                    {.ask =
                         [this] {
                             windowMover_.askAhead(windowTracker_.activeWindow());
                             nativeWindows_.askAgainForFront();
                         },
                     .dragHasEnded = [this] { windowMover_.dragHasEnded(); },
                     .isChange = [this](const auto& event) { return windowMover_.isResize(event); }}),
      singleInstance_(*connection_, mainQueue),
      trayManager_(*connection_) {
    connection_->dispatchEvents();
    endTurn();
    // The first command is not to pay for them.
    displays_.screens();
    windowManager_.isPresent();
}

std::vector<Desktop::Input> Desktop::inputs() {
    std::vector<Input> inputs{
        {.fileDescriptor = connection_->fileDescriptor(), .read = [this] { connection_->dispatchEvents(); }}};
    if (pointerLook_) {
        inputs.push_back(
            {.fileDescriptor = pointerLook_->fileDescriptor(), .read = [this] { eventMonitor_.readLook(); }});
    }
    return inputs;
}

bool Desktop::isBroken() const {
    return connection_->isBroken() || (pointerLook_ && pointerLook_->isBroken());
}

void Desktop::endTurn() {
    connection_->dispatchQueuedEvents();
    windowMover_.endTurn();
    accessibility_.endTurn();
    // What is read while sending may change the windows once more. An honest desktop is at rest after a few passes.
    for (int pass = 0; pass < 3; ++pass) {
        windowTracker_.update();
        if (!connection_->flush()) {
            break;
        }
    }
}

} // namespace brisk::x11
