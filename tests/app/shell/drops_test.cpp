#include "tests/app/shell/shell_window.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

namespace {

class Drops : public ShellWindow {
protected:
    static std::unique_ptr<QMimeData> Dragged(const std::vector<std::string>& paths) {
        auto data = std::make_unique<QMimeData>();
        QList<QUrl> urls;
        for (const std::string& path : paths) urls.append(QUrl::fromLocalFile(QString::fromStdString(path)));
        data->setUrls(urls);
        return data;
    }

    /// The place of a row's path, or of the status line for no row.
    QPoint PlaceOf(const std::string& row) {
        const QWidget* at = Find(*window, row.empty() ? "Process" : "Path, " + row);
        return at->mapTo(window.get(), at->rect().center());
    }

    /// Drags over the window and lets go. Whether it was taken.
    bool Drop(const std::vector<std::string>& paths, const std::string& row) {
        const auto data = Dragged(paths);
        const QPoint place = PlaceOf(row);
        QDragEnterEvent enter(place, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        if (!enter.isAccepted()) return false;
        QDragMoveEvent move(place, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &move);
        if (!move.isAccepted()) {
            QDragLeaveEvent leave;
            QApplication::sendEvent(window.get(), &leave);
            return false;
        }
        QDropEvent drop(QPointF(place), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &drop);
        return drop.isAccepted();
    }

    std::string PathIn(const std::string& row) {
        return Find<QLineEdit>(*window, "Path, " + row).text().toStdString();
    }
};

TEST_F(Drops, GoToTheirRows) {
    const std::string a = directory.Write("a.y4m", "x"), b = directory.Write("b.y4m", "x"),
                      c = directory.Write("c.y4m", "x");
    const struct {
        const char* what;
        std::vector<std::string> files;
        std::string row;
        bool comparative;
        std::vector<std::string> expected;  // original, processed, second; empty: refused
    } cases[] = {
        {"one on a row", {a}, "processed file", false, {"", a, ""}},
        {"two over a row", {a, b}, "processed file", false, {a, b, ""}},
        {"three with comparative analysis", {a, b, c}, "", true, {a, b, c}},
        {"one on a row that isn't open", {a}, "second processed file", false, {}},
        {"a directory", {directory.Root().native()}, "", false, {}},
        {"nothing of this machine", {}, "", false, {}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        state = QuietState(directory);
        state.job.comparativeAnalysis = test.comparative;
        Open();
        EXPECT_EQ(!test.expected.empty(), Drop(test.files, test.row));
        EXPECT_EQ("", PathIn("original file"));  // taken only when the drop has returned
        QApplication::processEvents();
        const std::vector<std::string> rows = {PathIn("original file"), PathIn("processed file"),
                                               PathIn("second processed file")};
        EXPECT_EQ(test.expected.empty() ? std::vector<std::string>(3) : test.expected, rows);
    }
}

TEST_F(Drops, AskAsBrowsingDoes) {
    Open();
    User user;
    user.Press("Tolvane - YUV File settings", "Cancel");
    ASSERT_TRUE(Drop({directory.Write("a.yuv", "x")}, "original file"));
    QApplication::processEvents();
    EXPECT_EQ("", PathIn("original file"));
}

TEST_F(Drops, OutlineTheRowsMeanwhile) {
    Open();
    const QWidget* field = Find(*window, "Path, original file");
    const auto outline = [&] {
        return const_cast<QWidget*>(field)->grab().toImage().pixelColor(1, 8) ==
               field->palette().color(QPalette::Highlight);
    };
    Find(*window, "Exit")->setFocus();
    const auto data = Dragged({directory.Write("a.y4m", "x")});
    QDragEnterEvent enter(PlaceOf("original file"), Qt::CopyAction, data.get(), Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(outline());
    QDragMoveEvent move(PlaceOf("processed file"), Qt::CopyAction, data.get(), Qt::LeftButton,
                        Qt::NoModifier);
    QApplication::sendEvent(window.get(), &move);
    EXPECT_FALSE(outline());
    QDragLeaveEvent leave;
    QApplication::sendEvent(window.get(), &leave);
    EXPECT_FALSE(outline());
}

TEST_F(Drops, AreRefusedDuringARun) {
    Open();
    state.phase = RunPhase::Measuring;
    EXPECT_FALSE(Drop({directory.Write("a.y4m", "x")}, ""));
    state.phase = RunPhase::Editing;
}

}  // namespace
