#include "platform/qt/form_grid.h"
#include "platform/qt/label_column.h"
#include "platform/qt/path_field.h"
#include "platform/qt/plain_label.h"
#include "platform/text.h"
#include "tests/platform/qt/user.h"
#include "tests/temporary_directory.h"

#include <sys/stat.h>

namespace {

TEST(LabelColumn, FieldsOfAllGroupsBeginOnOneLine) {
    QWidget window;
    LabelColumn labels;
    auto* rows = new QVBoxLayout(&window);
    QLineEdit* fields[] = {new QLineEdit, new QLineEdit, new QLineEdit};
    QGroupBox groups[2];
    for (QGroupBox& group : groups) rows->addWidget(&group);
    auto* first = new FormGrid(&groups[0], &labels);
    auto* second = new FormGrid(&groups[1], &labels);
    first->AddRow(QStringLiteral("Short:"), fields[0], new QPushButton(QStringLiteral("Browse")));
    QLabel* longest = second->AddRow(QStringLiteral("&Floating point delimiter:"), fields[1]);
    second->AddField(fields[2]);

    const auto begins = [&](int i) { return fields[i]->mapTo(&window, QPoint()).x(); };
    for (int pointSize : {9, 13, 8}) {
        QFont font = window.font();
        font.setPointSize(pointSize);
        window.setFont(font);
        window.adjustSize();
        window.show();
        SCOPED_TRACE(pointSize);
        EXPECT_TRUE(QTest::qWaitFor([&] { return begins(0) == begins(1) && begins(0) == begins(2); }, 1000));
        EXPECT_GE(longest->width(), longest->sizeHint().width());
        EXPECT_LE(longest->width(), longest->sizeHint().width() + 1);
    }
    EXPECT_LT(fields[0]->width(), fields[1]->width()) << "which takes the place of the other's button";
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(fields[1]);
    EXPECT_EQ("Floating point delimiter:", accessible->text(QAccessible::Name).toStdString());
}

TEST(PlainLabel, CutsWhatDoesntFit) {
    PlainLabel label(QStringLiteral("a<b>bold</b> & more"), PlainLabel::Tone::Normal, PlainLabel::Fit::Elide);
    label.resize(label.sizeHint());
    const QImage whole = label.grab().toImage();
    QLabel reference;
    reference.setTextFormat(Qt::PlainText);
    reference.setText(label.text());
    reference.resize(label.size());
    EXPECT_EQ(reference.grab().toImage(), whole);

    label.resize(label.width() / 2, label.height());
    EXPECT_EQ(0, label.minimumSizeHint().width());
    EXPECT_NE(whole.copy(label.rect()), label.grab().toImage());
}

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
    Activate(window);

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
