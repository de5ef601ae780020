#pragma once

#include "report/results_dialog.h"

#include "tests/platform/qt/user.h"

#include <map>
#include <memory>
#include <span>
#include <vector>

/// The viewer on results that are made up: a first and a second processed file, compared with an original.
class MadeResults {
public:
    /// `badFrames` are ascending; none are as if none were saved.
    explicit MadeResults(int frames, std::vector<int> badFrames = {}) : bad(std::move(badFrames)) {
        for (int file = 0; file < 3; ++file)
            files[file].name = L"/clips/" + std::to_wstring(file) + L"<b>&c.yuv";
        for (int id = 0; id < 2; ++id) {
            ResultRecord record;
            record.files = {files[0], files[id + 1]};
            Metric::GetMetricList().FindById(L"psnr", record.metricIndex);
            store.SetResultRecord(id, record);
            for (int frame = 0; frame < frames; ++frame) store.AddValue(id, frame, Value(id + 1, frame));
        }
    }

    /// Of a file's frame: whole numbers from 20 up for the first processed, 40 for the second.
    static float Value(int file, int frame) { return static_cast<float>(20 * file + frame * 7 % 17); }

    ReportParameters Parameters() const { return {store, bad.empty() ? nullptr : &bad, files, 0}; }

    CResultsStore store;
    std::vector<int> bad;
    std::map<int, FileRecord> files;
};

/// The dialog, shown, with its controls by their accessible names.
struct Viewer {
    explicit Viewer(const ReportParameters& given)
        : parameters(given), dialog(std::make_unique<Report::ResultsDialog>(parameters)) {
        Activate(*dialog);
    }

    template <typename Control>
    Control* Find(const char* name, const QWidget* window = nullptr) const {
        return &::Find<Control>(window ? *window : *dialog, name);
    }

    void Click(const char* name, const QWidget* window = nullptr) const {
        QTest::mouseClick(Find<QAbstractButton>(name, window), Qt::LeftButton);
    }

    /// As if typed: to the control that has the focus, in the window that is active.
    void Press(QKeyCombination key) const {
        ::Press(QApplication::activeWindow() ? *QApplication::activeWindow() : *dialog, key);
    }

    const Report::FrameRange& Range() const { return dialog->Controller().Range(); }

    ReportParameters parameters;
    std::unique_ptr<Report::ResultsDialog> dialog;
};

/// Turns the wheel over the middle of a widget.
inline void Wheel(QWidget& widget, int delta) {
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // others don't go on to the parents
    qApp->notify(&widget, &event);
}

struct ControlText {
    const char* name;  // accessible name, or text without "&"
    const char* toolTip;
};

/// What has to hold for the controls of a window: every one has a name, a reason while it is disabled, the
/// tooltip of `texts`. `letters` are their mnemonics, in ascending order.
inline void CheckTexts(const QWidget& window, std::span<const ControlText> texts, const char* letters) {
    EXPECT_EQ(letters, Mnemonics(window));
    for (const QWidget* control : window.findChildren<QWidget*>()) {
        if (control->window() != &window || control->focusPolicy() == Qt::NoFocus) continue;
        const QString name = control->accessibleName() + control->property("text").toString();
        EXPECT_FALSE(name.isEmpty()) << control->metaObject()->className();
        EXPECT_TRUE(control->isEnabled() || !control->toolTip().isEmpty()) << name.toStdString();
    }
    for (const ControlText& text : texts)
        EXPECT_EQ(text.toolTip, ::Find(window, text.name)->toolTip().toStdString()) << text.name;
}
