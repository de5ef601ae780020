#include "platform/loose_threads.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>

namespace {

using std::chrono::milliseconds;

TEST(LooseThreads, AreWaitedForWithPatience) {
    EXPECT_TRUE(LooseThreadsEnd(milliseconds(0))) << "there is none";

    std::promise<void> gate;
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    StartLooseThread([open = gate.get_future().share(), held = std::move(held)] { open.wait(); });
    StartLooseThread([] {});
    EXPECT_FALSE(LooseThreadsEnd(milliseconds(20)));
    gate.set_value();
    EXPECT_TRUE(LooseThreadsEnd(milliseconds(20'000)));
    EXPECT_TRUE(watched.expired()) << "what the work held has gone with its thread";
}

}  // namespace
