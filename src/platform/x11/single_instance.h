#pragma once

#include "platform/main_queue.h"
#include "platform/single_instance.h"
#include "platform/x11/connection.h"

#include <chrono>
#include <functional>
#include <memory>

namespace brisk::x11 {

/// One copy a screen: the one that owns a selection, which the server takes away from whoever dies. A second copy asks
/// the owner to convert the selection to a target that is a request (Inter-Client Communication Conventions Manual,
/// "Side-effect targets").
class SingleInstance final : public brisk::SingleInstance {
public:
    /// Longer than a start takes on a slow disk: a copy answers only once its main loop runs.
    static constexpr std::chrono::milliseconds defaultAnswerDeadline{5000};

    SingleInstance(Connection& connection, MainQueue& queue,
                   std::chrono::milliseconds answerDeadline = defaultAnswerDeadline);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance() override;

    Start start(std::function<void()> onStartedAgain) override;

private:
    /// Takes the selection if nobody has it; whose it is otherwise.
    xcb_window_t claim();
    /// Whether the owner takes note before it goes and before the deadline.
    bool ask(xcb_window_t owner, std::chrono::steady_clock::time_point deadline);
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);

    Connection& connection_;
    MainQueue& queue_;
    std::chrono::milliseconds answerDeadline_;
    /// Never mapped: owns the selection, or receives the answer.
    xcb_window_t ownWindow_;
    xcb_atom_t selection_;
    xcb_atom_t startedAgain_;
    xcb_window_t asked_ = XCB_WINDOW_NONE;
    bool hasAnswered_ = false;
    bool isGone_ = false;
    /// Shared with calls that are on their way, which do nothing once it is gone.
    std::shared_ptr<std::function<void()>> onStartedAgain_;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
