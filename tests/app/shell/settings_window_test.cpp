#include "app/rules/settings.h"
#include "app/rules/shell_start.h"
#include "platform/qt/qt_settings_store.h"
#include "tests/app/shell/shell_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

#include <filesystem>

namespace {

/// The program's main dialog between two stores of settings, without the program around it.
class Session {
public:
    Session(const TemporaryDirectory& directory, const QString& name)
        : store(QStringLiteral("Lumetry"), name),
          place(FromUtf8(directory.Root().native() + "/")),
          state(StartShell(store, place, place)),
          window(state, [this] { return saved = SaveSettings(store, Metric::GetMetricList(), state); }) {
        window.show();
    }

    QtSettingsStore store;
    bool saved = false;
    std::wstring place;
    ShellState state;
    MainWindow window;
};

const QString kName = QStringLiteral("WindowTest");

class SettingsOfTheWindow : public testing::Test {
protected:
    const TemporaryDirectory directory;
};

TEST_F(SettingsOfTheWindow, ComeBackAsTheyWereLeft) {
    {
        Session first(directory, kName);
        auto& path = Find<QLineEdit>(first.window, "Path, original file");
        path.setFocus();
        QTest::keyClicks(&path, QStringLiteral("/videos/a, \"b\" & c.y4m"));
        for (const char* box : {"Comparative analysis", "Use mask file:", "Use black mask", "Save CSV file",
                                "Save metric visualization video / image", "Show results visualization"})
            Click(first.window, box);
        auto& metric = Find<QComboBox>(first.window, "Metric");
        metric.setCurrentIndex(metric.findText(QStringLiteral("MSE")));
        emit metric.activated(metric.currentIndex());
        Click(first.window, "G-RGB");
        Click(first.window, "Exit");
        EXPECT_TRUE(first.window.HasEnded());
        EXPECT_TRUE(first.saved);
    }
    Session second(directory, kName);
    EXPECT_EQ("/videos/a, \"b\" & c.y4m",
              Find<QLineEdit>(second.window, "Path, original file").text().toStdString());
    EXPECT_TRUE(Find<QCheckBox>(second.window, "Use black mask").isChecked());
    EXPECT_FALSE(Find<QCheckBox>(second.window, "Show results visualization").isChecked());
    EXPECT_EQ("MSE", Find<QComboBox>(second.window, "Metric").currentText().toStdString());
    EXPECT_TRUE(Find<QRadioButton>(second.window, "G-RGB").isChecked());
    EXPECT_EQ(2, second.state.runNumber);
}

TEST_F(SettingsOfTheWindow, AVanishedDirectoryHoldsNothingUp) {
    Session session(directory, QStringLiteral("Gone"));
    const std::filesystem::path folder =
        std::filesystem::path(session.store.FilePath().toStdString()).parent_path();
    std::filesystem::remove_all(folder);
    std::ofstream(folder) << "a file where the directory was";
    QElapsedTimer time;
    time.start();
    session.window.close();
    EXPECT_LT(time.elapsed(), 3000);
    EXPECT_TRUE(session.window.HasEnded());
    EXPECT_FALSE(session.saved);
    std::filesystem::remove(folder);
}

}  // namespace
