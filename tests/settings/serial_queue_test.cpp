#include "settings/serial_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <numeric>
#include <vector>

namespace brisk {
namespace {

TEST(SerialQueue, RunsInOrderOffTheCallingThreadAndSyncWaitsForAllBefore) {
    SerialQueue queue("a label longer than a thread's name may be");
    std::vector<int> order;
    bool isElsewhere = false;
    for (int i = 0; i < 1'000; ++i) {
        queue.async([&order, i] { order.push_back(i); });
    }
    queue.sync([&, caller = std::this_thread::get_id()] { isElsewhere = std::this_thread::get_id() != caller; });
    std::vector<int> expected(1'000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
    EXPECT_TRUE(isElsewhere);
}

TEST(SerialQueue, EndsOnlyAfterWhatWasSubmitted) {
    std::atomic<int> finished = 0;
    {
        std::promise<void> gate;
        SerialQueue queue("test");
        queue.async([opened = gate.get_future().share()] { opened.wait(); });
        for (int i = 0; i < 10; ++i) {
            queue.async([&] {
                ++finished;
                queue.async([&] { ++finished; });
            });
        }
        EXPECT_EQ(finished, 0) << "the first still holds the queue";
        gate.set_value();
    }
    EXPECT_EQ(finished, 20) << "with the work that work submitted";
}

} // namespace
} // namespace brisk
