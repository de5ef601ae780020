#include "engine/model/interruption_token.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace {

/// Time to see that a poll waits; a poll that doesn't takes microseconds.
constexpr std::chrono::milliseconds kAWhile(50);

TEST(InterruptionToken, PauseHoldsThePollUntilResume) {
    for (const bool stop : {false, true}) {
        InterruptionToken token;
        token.Pause();
        token.Pause();  // a second time changes nothing
        std::future<bool> poll = std::async(std::launch::async, [&] { return token.KeepRunning(); });
        EXPECT_EQ(std::future_status::timeout, poll.wait_for(kAWhile));
        if (stop) token.Stop();
        EXPECT_EQ(std::future_status::timeout, poll.wait_for(kAWhile)) << "a stop waits for the answer";
        token.Resume();
        EXPECT_EQ(!stop, poll.get());
    }
}

TEST(InterruptionToken, ResumeWithoutPauseIsNothing) {
    InterruptionToken token;
    for (int i = 0; i < 3; ++i) token.Resume();
    EXPECT_TRUE(token.KeepRunning());

    // It mustn't have made room for a second poll during a pause.
    token.Pause();
    std::future<bool> poll = std::async(std::launch::async, [&] { return token.KeepRunning(); });
    EXPECT_EQ(std::future_status::timeout, poll.wait_for(kAWhile));
    token.Resume();
    EXPECT_TRUE(poll.get());
}

}  // namespace
