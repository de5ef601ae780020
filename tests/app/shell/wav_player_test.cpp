#include "app/shell/wav_player.h"

#include "platform/text.h"
#include "tests/platform/qt/user.h"
#include "tests/temporary_directory.h"

#include <signal.h>
#include <sys/stat.h>

namespace {

struct WavPlayerTest : testing::Test {
    /// A program that notes this, in which $@ are its arguments, and then ends by a command.
    SoundProgram Program(const std::string& name, const std::string& note, const std::string& end) {
        const std::string path = directory.Write(
            name, "#!/bin/sh\necho " + note + " >>" + directory.Path("played") + "\n" + end + "\n");
        chmod(path.c_str(), 0755);
        return {QString::fromStdString(path), {QStringLiteral("-q")}};
    }
    std::string Played() { return ReadWhole(directory.Path("played")); }

    const TemporaryDirectory directory;
    const std::string wav = directory.Write("-a b.wav", "RIFF");
};

TEST_F(WavPlayerTest, TakesTheFirstProgramThatCanIfThereIsAFile) {
    const SoundProgram missing = {QStringLiteral("/nowhere/player"), {}};
    WavPlayer player({missing, Program("deaf", "deaf $@", "exit 1"), Program("plays", "plays $@", "exit 0"),
                      Program("never", "never $@", "exit 0")});
    player.Play(L"");
    player.Play(FromUtf8(directory.Path("missing.wav")));
    WavPlayer mute({missing});
    mute.Play(FromUtf8(wav));
    player.Play(FromUtf8(wav));
    const std::string expected = "deaf -q " + wav + "\nplays -q " + wav + "\n";
    EXPECT_TRUE(QTest::qWaitFor([&] { return Played() == expected; }, 5000)) << Played();
    QTest::qWait(200);
    EXPECT_EQ(expected, Played());
}

TEST_F(WavPlayerTest, EndsASoundThatStillPlays) {
    {
        WavPlayer player({Program("long", "$$", "exec sleep 60")});
        player.Play(FromUtf8(wav));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !Played().empty(); }, 5000));
    }
    EXPECT_NE(0, kill(std::stoi(Played()), 0));
}

}  // namespace
