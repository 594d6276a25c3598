#include "platform/x11/single_instance.h"

#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "platform/simulated/main_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <deque>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace brisk {
namespace {

using namespace std::chrono_literals;
using Start = SingleInstance::Start;

/// The part of a copy of the program that is about being the only one. Its main loop turns only when told.
class Copy {
public:
    explicit Copy(const desktop::VirtualServer& server, std::chrono::milliseconds answerDeadline = 10s)
        : connection(x11::Connection::open(server.display().c_str())),
          instance(std::make_unique<x11::SingleInstance>(*connection, queue, answerDeadline)) {}

    Start start() {
        return instance->start([this] { ++startsAgain; });
    }
    void turn() {
        connection->dispatchEvents();
        queue.run();
    }
    /// Ends as a killed process does.
    void die() { instance.reset(), connection.reset(); }

    simulated::MainQueue queue;
    std::unique_ptr<x11::Connection> connection;
    std::unique_ptr<x11::SingleInstance> instance;
    int startsAgain = 0;
};

/// What `copy` finds while `meanwhile` is done again and again in this thread.
template <class Meanwhile>
Start startWhile(Copy& copy, Meanwhile meanwhile) {
    auto starting = std::async(std::launch::async, [&] { return copy.start(); });
    while (starting.wait_for(1ms) != std::future_status::ready) {
        meanwhile();
    }
    return starting.get();
}

TEST(SingleInstanceTest, ASecondStartIsHeardByTheFirst) {
    const desktop::VirtualServer server;
    Copy first(server);
    ASSERT_EQ(first.start(), Start::alone);
    first.turn();
    EXPECT_EQ(first.startsAgain, 0);
    for (const int starts : {1, 2}) {
        Copy again(server);
        EXPECT_EQ(startWhile(again, [&] { first.turn(); }), Start::handedOver);
        EXPECT_EQ(first.startsAgain, starts);
        EXPECT_EQ(again.startsAgain, 0);
    }
    first.die();
    Copy next(server);
    EXPECT_EQ(next.start(), Start::alone);
}

TEST(SingleInstanceTest, AFrozenCopyHoldsUpTheStartForAWhileOnly) {
    const desktop::VirtualServer server;
    Copy frozen(server);
    ASSERT_EQ(frozen.start(), Start::alone);
    {
        Copy second(server, 200ms);
        EXPECT_EQ(second.start(), Start::noAnswer);
    }
    // What it finds when it goes on: someone who has left.
    frozen.turn();
    Copy third(server);
    EXPECT_EQ(startWhile(third, [&] { frozen.turn(); }), Start::handedOver);
}

TEST(SingleInstanceTest, ACopyThatEndsInsteadOfAnsweringLeavesItsPlace) {
    const desktop::VirtualServer server;
    auto ending = std::make_unique<Copy>(server);
    ASSERT_EQ(ending->start(), Start::alone);
    Copy next(server);
    int turns = 0;
    EXPECT_EQ(startWhile(next,
                         [&] {
                             if (++turns == 50) {
                                 ending->die();
                             }
                         }),
              Start::alone);
    EXPECT_GE(turns, 50) << "it waited for the other's end";
}

TEST(SingleInstanceTest, OfManyStartedAtOnceOneGoesOn) {
    const desktop::VirtualServer server;
    constexpr int copies = 8;
    std::barrier ready(copies);
    std::atomic<int> alone{0};
    std::atomic<int> handedOver{0};
    std::atomic<int> startsAgain{0};
    // Connected one after the other: the library that looks for the server's cookie is not made for threads.
    std::deque<Copy> connected;
    for (int i = 0; i < copies; ++i) {
        connected.emplace_back(server);
    }
    std::vector<std::jthread> threads;
    threads.reserve(copies);
    for (Copy& copy : connected) {
        threads.emplace_back([&] {
            ready.arrive_and_wait();
            if (const Start start = copy.start(); start != Start::alone) {
                handedOver += start == Start::handedOver ? 1 : 0;
                return;
            }
            ++alone;
            // It stays until the others have gone: what a client asks for last may be lost when it disconnects.
            EXPECT_TRUE(desktop::waitUntil([&] {
                copy.turn();
                return handedOver == copies - 1;
            }));
            startsAgain = copy.startsAgain;
        });
    }
    threads.clear();
    EXPECT_EQ(alone, 1);
    EXPECT_EQ(handedOver, copies - 1);
    EXPECT_EQ(startsAgain, copies - 1);
}

} // namespace
} // namespace brisk
