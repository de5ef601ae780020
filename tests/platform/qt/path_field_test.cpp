#include "platform/qt/path_field.h"

#include "platform/text.h"
#include "tests/platform/qt/user.h"
#include "tests/temporary_directory.h"

#include <sys/stat.h>

namespace {

std::unique_ptr<QMimeData> Dragged(const QList<QByteArray>& urls) {
    QList<QUrl> list;
    for (const QByteArray& url : urls) list.append(QUrl::fromEncoded(url));
    auto data = std::make_unique<QMimeData>();
    data->setUrls(list);
    return data;
}

QByteArray FileUrl(const std::string& path) {
    return "file://" + QByteArray::fromStdString(path).toPercentEncoding("/");
}

/// Whether the field takes what is dragged onto it, or dropped there.
template <class Event, class Point>
bool Send(PathField& field, const QMimeData& data) {
    Event event(Point(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&field, &event);
    return event.isAccepted();
}
constexpr auto kEnter = Send<QDragEnterEvent, QPoint>;
constexpr auto kDrop = Send<QDropEvent, QPointF>;

TEST(PathField, AcceptsOneLocalFile) {
    const TemporaryDirectory directory;
    const std::string plain = directory.Write("a<b>&c %41.yuv", "x");
    const std::string notUtf8 = directory.Write("caf\xe9.yuv", "x");
    const std::string pipe = directory.Path("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    const std::pair<QList<QByteArray>, std::string> cases[] = {
        {{FileUrl(plain)}, plain},
        {{FileUrl(notUtf8)}, notUtf8},
        {{FileUrl(plain), FileUrl(notUtf8)}, ""},  // refused, and so are all that follow
        {{FileUrl(directory.Root().native())}, ""},
        {{FileUrl(pipe)}, ""},
        {{FileUrl(plain + "x")}, ""},
        {{"https://example.org/a.yuv"}, ""},
        {{"file://server" + FileUrl(plain).mid(7)}, ""},
        {{}, ""},
    };
    for (const auto& [urls, path] : cases) {
        SCOPED_TRACE(urls.join(' ').toStdString());
        PathField field(PathField::Drop::File);
        field.SetPath(L"before");
        const QSignalSpy drops(&field, &PathField::FileDropped);
        const auto data = Dragged(urls);
        EXPECT_EQ(!path.empty(), kEnter(field, *data));
        if (path.empty()) continue;
        EXPECT_TRUE(kDrop(field, *data));
        EXPECT_TRUE(drops.isEmpty());  // sent when the drop has returned
        QApplication::processEvents();
        ASSERT_EQ(1, drops.size());
        EXPECT_EQ(FromUtf8(path), drops[0][0].value<std::wstring>());
        EXPECT_EQ(L"before", field.Path());
    }
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

    // What shows is the end of the name: a longer path shows the same.
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
    PathField file(PathField::Drop::File);
    for (const bool isEnabled : {true, false, true}) {
        file.setEnabled(isEnabled);
        EXPECT_EQ(isEnabled ? "Drop a file here" : "", file.placeholderText().toStdString());
    }
    const PathField directory(PathField::Drop::None);
    EXPECT_EQ("", directory.placeholderText().toStdString());
    EXPECT_FALSE(directory.acceptDrops());
}

}  // namespace
