#include "platform/qt/path_field.h"

#include "platform/text.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>
#include <QVBoxLayout>

namespace {

QMimeData* Dragged(const QList<QByteArray>& urls) {
    auto* data = new QMimeData;
    QList<QUrl> list;
    for (const QByteArray& url : urls) list.append(QUrl::fromEncoded(url));
    data->setUrls(list);
    return data;
}

QByteArray FileUrl(const std::string& path) {
    return "file://" + QByteArray::fromStdString(path).toPercentEncoding("/");
}

bool Enter(PathField& field, const QMimeData& data) {
    QDragEnterEvent event(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&field, &event);
    return event.isAccepted();
}

bool Drop(PathField& field, const QMimeData& data) {
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&field, &event);
    return event.isAccepted();
}

TEST(PathField, AcceptsOneLocalFile) {
    const TemporaryDirectory directory;
    const std::string plain = directory.Write("a<b>&c %41.yuv", "x");
    const std::string notUtf8 = directory.Write("caf\xe9.yuv", "x");
    const std::string pipe = directory.Path("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    const struct {
        const char* what;
        QList<QByteArray> urls;
        bool isEnabled;
        std::string path;  // empty: refused
    } cases[] = {
        {"a file", {FileUrl(plain)}, true, plain},
        {"a name that isn't UTF-8", {FileUrl(notUtf8)}, true, notUtf8},
        {"a disabled field", {FileUrl(plain)}, false, ""},
        {"two files", {FileUrl(plain), FileUrl(notUtf8)}, true, ""},
        {"a directory", {FileUrl(directory.Root().native())}, true, ""},
        {"a pipe", {FileUrl(pipe)}, true, ""},
        {"a missing file", {FileUrl(plain + "x")}, true, ""},
        {"a web address", {"https://example.org/a.yuv"}, true, ""},
        {"a file of another machine", {"file://server" + FileUrl(plain).mid(7)}, true, ""},
        {"no address", {}, true, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        PathField field(PathField::Drop::File);
        field.SetPath(L"before");
        field.setEnabled(c.isEnabled);
        const QSignalSpy drops(&field, &PathField::FileDropped);
        const std::unique_ptr<QMimeData> data(Dragged(c.urls));
        const bool isAccepted = Enter(field, *data);
        EXPECT_EQ(!c.path.empty(), isAccepted);
        if (!isAccepted) continue;

        EXPECT_TRUE(Drop(field, *data));
        EXPECT_TRUE(drops.isEmpty());  // sent when the drop has returned
        QApplication::processEvents();
        ASSERT_EQ(1, drops.size());
        EXPECT_EQ(FromUtf8(c.path), drops[0][0].value<std::wstring>());
        EXPECT_EQ(L"before", field.Path());
    }
}

TEST(PathField, OutlinesTheTargetWhileDragging) {
    const TemporaryDirectory directory;
    const std::unique_ptr<QMimeData> data(Dragged({FileUrl(directory.Write("a.yuv", "x"))}));
    PathField field(PathField::Drop::File);
    field.resize(field.sizeHint());
    const QImage before = field.grab().toImage();
    ASSERT_TRUE(Enter(field, *data));
    const QImage during = field.grab().toImage();
    const QColor highlight = field.palette().color(QPalette::Highlight);
    for (QPoint inOutline : {QPoint(0, 8), QPoint(1, 8), QPoint(60, 0), QPoint(60, 1)}) {
        EXPECT_EQ(highlight, during.pixelColor(inOutline));
        EXPECT_NE(highlight, before.pixelColor(inOutline));
    }
    QDragLeaveEvent leave;
    QApplication::sendEvent(&field, &leave);
    EXPECT_EQ(before, field.grab().toImage());
}

TEST(PathField, ElidesWithoutFocusOnly) {
    QWidget window;
    auto* rows = new QVBoxLayout(&window);
    auto* field = new PathField(PathField::Drop::None);
    auto* other = new PathField(PathField::Drop::None);
    rows->addWidget(field);
    rows->addWidget(other);
    field->SetPath(L"/data/" + std::wstring(200, L'w') + L"/clip.y4m");
    window.resize(300, window.sizeHint().height());
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));

    other->setFocus();
    other->SetPath(L"/data/" + std::wstring(100, L'w') + L"/clip.y4m");
    field->setFocus();
    const QImage focused = field->grab().toImage();
    other->setFocus();
    const QImage elided = field->grab().toImage();
    EXPECT_NE(focused, elided);

    // What shows is the end of the name, as in a short path: the right half equals that of one elided
    // elsewhere.
    field->SetPath(L"/data/" + std::wstring(250, L'w') + L"/clip.y4m");
    EXPECT_EQ(elided, field->grab().toImage());
}

TEST(PathField, TakesNoLetterOfAMnemonic) {
    PathField field(PathField::Drop::None);
    QTest::keyClick(&field, 'k', Qt::AltModifier);
    EXPECT_EQ(L"", field.Path());
    QTest::keyClick(&field, 'K', Qt::ShiftModifier);
    EXPECT_EQ(L"K", field.Path());
}

TEST(PathField, HintsOnlyWhereAFileCanBeDropped) {
    PathField file(PathField::Drop::File), directory(PathField::Drop::None);
    EXPECT_EQ("Drop a file here", file.placeholderText().toStdString());
    EXPECT_EQ("", directory.placeholderText().toStdString());
    EXPECT_FALSE(directory.acceptDrops());
    file.setEnabled(false);
    EXPECT_EQ("", file.placeholderText().toStdString());
    file.setEnabled(true);
    EXPECT_EQ("Drop a file here", file.placeholderText().toStdString());
}

}  // namespace
