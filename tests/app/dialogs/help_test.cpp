#include "platform/qt/help.h"

#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/script_dialog.h"
#include "platform/qt/wide_text.h"
#include "tests/app/shell/user.h"
#include "tests/platform/qt/opened_files.h"

#include <gtest/gtest.h>
#include <QTest>

namespace {

// The pages are the real ones, which stand beside every program of the build.
TEST(Help, F1AndTheButtonOpenThePageOfTheDialog) {
    OpenedFiles opened;
    FileRecord record;
    MeasurementJob job;
    ScriptDialog script(nullptr, record, {});
    MatrixDialog matrix(nullptr, job);
    MetricDialog metric(nullptr, job);
    const struct {
        QDialog& dialog;
        const wchar_t* page;
        bool hasButton;
    } cases[] = {{script, kHelpScripts, true}, {matrix, kHelpMatrix, true}, {metric, kHelpStart, false}};
    for (const auto& c : cases) {
        opened.urls.clear();
        c.dialog.show();
        c.dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&c.dialog));
        QTest::keyClick(c.dialog.focusWidget(), Qt::Key_F1);
        if (c.hasButton) Click(c.dialog, "Help");
        ASSERT_EQ(c.hasButton ? 2 : 1, opened.urls.size());
        EXPECT_EQ(ToQString(c.page), opened.urls[0].fileName());
        EXPECT_EQ(opened.urls.front(), opened.urls.back());
        EXPECT_TRUE(c.dialog.isVisible());
    }
}

}  // namespace
