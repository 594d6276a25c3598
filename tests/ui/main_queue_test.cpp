#include "platform/qt/main_queue.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace brisk::qt {
namespace {

using namespace std::chrono_literals;

constexpr int inTime = 1;
constexpr int tooLate = 2;

class MainQueueTest : public testing::Test {
protected:
    MainQueueTest() {
        QObject::connect(&deadline_, &QTimer::timeout, &loop, [this] { loop.exit(tooLate); });
        deadline_.start(5s);
    }

    MainQueue queue;
    QEventLoop loop;

private:
    QTimer deadline_;
};

TEST_F(MainQueueTest, RunsWorkInOrderAndNeverInsideTheCall) {
    std::string order;
    queue.async([&] {
        queue.async([&] { order += 'c'; });
        order += 'a';
    });
    queue.async([&] { order += 'b'; });
    // Longer than one turn takes in.
    int left = 100;
    const std::function<void()> again = [&] {
        if (--left > 0) {
            queue.async(again);
        } else {
            loop.exit(inTime);
        }
    };
    queue.async(again);
    EXPECT_EQ(order, "");
    EXPECT_EQ(loop.exec(), inTime);
    EXPECT_EQ(order, "abc");
}

TEST_F(MainQueueTest, ATimeThatHasPassedIsNoReasonNeverToRun) {
    queue.asyncAfter(-2ms, [&] { loop.exit(inTime); });
    EXPECT_EQ(loop.exec(), inTime);
}

TEST_F(MainQueueTest, ADialogOpenedByWorkGoesOnAndItsEndIsTheProgramsToo) {
    QEventLoop* dialog = nullptr;
    bool isWorkDone = false;
    queue.setEndOfTurn([&] {
        if (dialog != nullptr && isWorkDone) {
            dialog->exit();
            loop.exit(inTime);
        }
    });
    queue.async([&] {
        QEventLoop inner;
        dialog = &inner;
        queue.async([&] { isWorkDone = true; });
        inner.exec();
        dialog = nullptr;
    });
    EXPECT_EQ(loop.exec(), inTime);
}

} // namespace
} // namespace brisk::qt
