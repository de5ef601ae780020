#include "engine/model/interruption_token.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace {

TEST(InterruptionToken, PauseHoldsThePollUntilResume) {
    constexpr std::chrono::milliseconds kAWhile(50);  // a poll that doesn't wait takes microseconds
    for (const bool stop : {false, true}) {
        InterruptionToken token;
        token.Resume();  // without a pause: it mustn't make room for a poll during the next one
        EXPECT_TRUE(token.KeepRunning());
        token.Pause();
        if (stop) token.Pause();  // a second time changes nothing
        std::future<bool> poll = std::async(std::launch::async, [&] { return token.KeepRunning(); });
        EXPECT_EQ(std::future_status::timeout, poll.wait_for(kAWhile));
        if (stop) token.Stop();
        EXPECT_EQ(std::future_status::timeout, poll.wait_for(kAWhile)) << "a stop waits for the answer";
        token.Resume();
        EXPECT_EQ(!stop, poll.get());
    }
}

}  // namespace
