#include "tests/app/shell/shell_window.h"

namespace {

struct Drops : ShellWindow {
    /// The place of a row's path, or of the status line for no row.
    QPoint PlaceOf(const std::string& row) {
        const QWidget* at = Find(*window, row.empty() ? "Process" : "Path, " + row);
        return at->mapTo(window.get(), at->rect().center());
    }

    /// Drags into the window, or there. Whether it could be let go.
    template <class Event>
    bool Drag(const QMimeData& data, const std::string& row) {
        Event event(PlaceOf(row), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &event);
        return event.isAccepted();
    }
    /// Drags over the window and lets go. Whether it was taken.
    bool Drop(const std::vector<std::string>& paths, const std::string& row) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::string& path : paths) urls.append(QUrl::fromLocalFile(QString::fromStdString(path)));
        data.setUrls(urls);
        if (!Drag<QDragEnterEvent>(data, row)) return false;
        if (Drag<QDragMoveEvent>(data, row)) return Drag<QDropEvent>(data, row);
        QDragLeaveEvent leave;
        QApplication::sendEvent(window.get(), &leave);
        return false;
    }
};

TEST_F(Drops, GoToTheirRows) {
    const std::string a = directory.Write("a.y4m", "x"), b = directory.Write("b.y4m", "x"),
                      c = directory.Write("c.y4m", "x");
    // Files, over which row, comparative analysis, measuring; paths of the three rows, or none: it is refused.
    const std::tuple<const char*, std::vector<std::string>, std::string, bool, bool, std::vector<std::string>>
        cases[] = {
            {"two over a row", {a, b}, "processed file", false, false, {a, b, ""}},
            {"three with comparative analysis", {a, b, c}, "", true, false, {a, b, c}},
            {"one on a row that isn't open", {a}, "second processed file", false, false, {}},
            {"a directory", {directory.Root().native()}, "", false, false, {}},
            {"nothing of this machine", {}, "", false, false, {}},
            {"during a run", {a}, "", false, true, {}},
        };
    for (const auto& [what, files, row, comparative, isMeasuring, expected] : cases) {
        SCOPED_TRACE(what);
        state = QuietState(directory);
        state.job.comparativeAnalysis = comparative;
        Open();
        if (isMeasuring) state.phase = RunPhase::Measuring;
        EXPECT_EQ(!expected.empty(), Drop(files, row));
        EXPECT_EQ("", PathIn("original file"));  // taken only when the drop has returned
        QApplication::processEvents();
        state.phase = RunPhase::Editing;
        const std::vector<std::string> rows = {PathIn("original file"), PathIn("processed file"),
                                               PathIn("second processed file")};
        EXPECT_EQ(expected.empty() ? std::vector<std::string>(3) : expected, rows);
    }
}

}  // namespace
