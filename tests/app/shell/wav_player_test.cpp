#include "app/shell/wav_player.h"

#include "platform/text.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <QTest>

namespace {

class WavPlayerTest : public testing::Test {
protected:
    /// A program that notes its arguments and ends with this status.
    SoundProgram Program(const std::string& name, int status) {
        const std::string path =
            directory.Write(name, "#!/bin/sh\necho " + name + " \"$@\" >>" + directory.Path("played") +
                                      "\nexit " + std::to_string(status));
        chmod(path.c_str(), 0755);
        return {QString::fromStdString(path), {QStringLiteral("-q")}};
    }
    std::string Played() { return ReadWhole(directory.Path("played")); }

    const TemporaryDirectory directory;
    const std::string wav = directory.Write("-a b.wav", "RIFF");
};

TEST_F(WavPlayerTest, TakesTheFirstProgramThatCan) {
    WavPlayer player({{QStringLiteral("/nowhere/player"), {}},
                      Program("deaf", 1),
                      Program("plays", 0),
                      Program("never", 0)});
    player.Play(FromUtf8(wav));
    const std::string expected = "deaf -q " + wav + "\nplays -q " + wav + "\n";
    EXPECT_TRUE(QTest::qWaitFor([&] { return Played() == expected; }, 5000)) << Played();
    QTest::qWait(100);
    EXPECT_EQ(expected, Played());
}

TEST_F(WavPlayerTest, IsSilentWithoutAFileOrAProgram) {
    WavPlayer player({Program("plays", 0)});
    player.Play(L"");
    player.Play(FromUtf8(directory.Path("missing.wav")));
    WavPlayer mute({{QStringLiteral("/nowhere/player"), {}}});
    mute.Play(FromUtf8(wav));
    QTest::qWait(200);
    EXPECT_EQ("", Played());
}

TEST_F(WavPlayerTest, EndsASoundThatStillPlays) {
    const std::string path =
        directory.Write("long", "#!/bin/sh\necho $$ >>" + directory.Path("played") + "\nexec sleep 60\n");
    chmod(path.c_str(), 0755);
    {
        WavPlayer player({{QString::fromStdString(path), {}}});
        player.Play(FromUtf8(wav));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !Played().empty(); }, 5000));
    }
    EXPECT_NE(0, kill(std::stoi(Played()), 0));
}

}  // namespace
