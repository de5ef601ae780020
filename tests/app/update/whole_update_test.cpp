#include "tests/update/update_fixture.h"

#include "tests/platform/qt/user.h"

#include <signal.h>

#include <algorithm>
#include <sstream>

namespace {

namespace fs = std::filesystem;

constexpr int kPatienceMs = 30000;

using Notes = std::vector<std::string>;

/// Updates of a copy of the desktop program, in a process of its own, with a user at its windows.
struct WholeUpdate : UpdateFixture {
    WholeUpdate() {
        fs::create_directories(directory.Path("config/Lumetry"));
        Set("XDG_CONFIG_HOME", directory.Path("config"));
        Set("TEST_NOTES", directory.Path("notes"));
        Set("TEST_UPDATE_SERVER", server.Url());
    }
    /// The old version, and a new one on the server.
    void SetUp() override {
        fs::remove(directory.Path("notes"));
        Write("tolvane", Version("3.0.0.0"));
        chmod(Program("tolvane").c_str(), 0755);
        Offer({{"tolvane", Version("3.0.0.1")}, {"help/new/page.html", "new"}});
    }
    ~WholeUpdate() override {
        process.kill();
        process.waitForFinished();
    }

    /// A version of the program; see update_program.cpp.
    static std::string Version(const std::string& version) {
        static const std::string program = ReadWhole(UPDATE_PROGRAM);
        return program + version;
    }

    void Set(const char* variable, const std::string& value) {
        environment.insert(QString::fromUtf8(variable), QString::fromStdString(value));
    }

    void Start() {
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QString::fromStdString(Program("tolvane")), {});
        ASSERT_TRUE(process.waitForStarted());
    }
    void End() {
        kill(static_cast<pid_t>(process.processId()), SIGTERM);
        ASSERT_TRUE(process.waitForFinished(kPatienceMs));
        EXPECT_EQ(QProcess::NormalExit, process.exitStatus());
        EXPECT_EQ(0, process.exitCode());
    }

    /// What the user has seen so far.
    Notes Seen() const {
        std::istringstream text(ReadWhole(directory.Path("notes")));
        Notes notes;
        for (std::string line; std::getline(text, line);) notes.push_back(line);
        return notes;
    }
    bool Sees(const std::string& note) const {
        return QTest::qWaitFor([&] { return std::ranges::count(Seen(), note) > 0; }, kPatienceMs);
    }
    void Save(const std::string& settings) const { directory.Write("config/Lumetry/TLV.ini", settings); }
    void ExpectSaved(const char* line) const {
        const std::string saved = ReadWhole(directory.Path("config/Lumetry/TLV.ini"));
        EXPECT_NE(std::string::npos, saved.find(line)) << saved;
    }

    void ExpectNewVersion() const {
        EXPECT_TRUE(Version("3.0.0.1") == Contents("tolvane"));
        EXPECT_TRUE(Version("3.0.0.0") == Contents("tolvane.bak"));
        EXPECT_EQ(0755u, Mode("tolvane"));
        EXPECT_EQ("new", Contents("help/new/page.html"));
        EXPECT_FALSE(Exists("update"));
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QProcess process;
};

TEST_F(WholeUpdate, RestartsAsTheNewVersion) {
    Start();
    EXPECT_TRUE(Sees("3.0.0.1 Tolvane 3.0"));
    EXPECT_EQ(Notes({"3.0.0.0 Tolvane 3.0", "3.0.0.0 Update is available", "3.0.0.0 Download completed",
                     "3.0.0.1 Tolvane 3.0"}),
              Seen());
    ExpectNewVersion();
    ExpectSaved("run_num=1\n");
    End();
    ExpectSaved("run_num=2\n");
    EXPECT_EQ(4u, Seen().size()) << "the new one is up to date";

    // From a question ahead of the first window: at its 30th start the program asks for feedback.
    SetUp();
    Save("[numbers]\nrun_num=29\n");
    Start();
    EXPECT_TRUE(Sees("3.0.0.1 Tolvane 3.0"));
    EXPECT_EQ(Notes({"3.0.0.0 Update is available", "3.0.0.0 Download completed", "3.0.0.1 Tolvane 3.0"}),
              Seen());
    ExpectSaved("run_num=30\n");
    End();
}

TEST_F(WholeUpdate, TheNextStartInstallsWithoutAQuestion) {
    Set("TEST_REFUSED", "Download completed");
    Start();
    EXPECT_TRUE(Sees("3.0.0.0 Download completed"));
    End();
    EXPECT_TRUE(Version("3.0.0.0") == Contents("tolvane"));

    Start();
    EXPECT_TRUE(Sees("3.0.0.1 Tolvane 3.0"));
    EXPECT_EQ(4u, Seen().size());
    ExpectNewVersion();
    End();
}

TEST_F(WholeUpdate, ARunEndsFirstAndKeepsWhatItHas) {
    // Zeros that take no space on the disk, as ten million frames: more than are measured meanwhile.
    const std::string video = directory.Write("long.yuv", "");
    fs::resize_file(video, std::uintmax_t{96} * 10'000'000);
    fs::create_directories(directory.Path("results"));
    std::string settings = "[numbers]\nsave_csv=1\n";
    for (const std::string slot : {"original", "processed"})
        settings += slot + "_width=8\n" + slot + "_height=8\n" + slot + "_yuv_type=6\n";
    settings += "[texts]\noriginal=" + video + "\nfirst_processed=" + video +
                "\ncsv_output_dir=" + directory.Path("results") + "\n";
    Save(settings);
    Set("TEST_MEASURES", "1");
    const auto waits = [this] { Sees("3.0.0.0 Tolvane - Progress"); };
    server.Answer("/update/LATEST", {.body = "3.0.0.1", .beforeBody = waits});
    Start();
    EXPECT_TRUE(Sees("3.0.0.1 Tolvane 3.0"));
    EXPECT_EQ(Notes({"3.0.0.0 Tolvane 3.0", "3.0.0.0 Tolvane - Progress", "3.0.0.0 Update is available",
                     "3.0.0.0 Download completed", "3.0.0.1 Tolvane 3.0"}),
              Seen());
    ExpectNewVersion();
    ASSERT_FALSE(fs::is_empty(directory.Path("results")));
    const std::string csv = ReadWhole(fs::directory_iterator(directory.Path("results"))->path());
    const auto lines = std::count(csv.begin(), csv.end(), '\n');
    EXPECT_GT(lines, 100);
    EXPECT_LT(lines, 10'000'000);
    End();
}

}  // namespace
