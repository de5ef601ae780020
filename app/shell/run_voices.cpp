#include "app/shell/run_voices.h"

#include "engine/model/measuring_line.h"

bool CLogInterface::Log(const std::wstring& message) {
    feed.Add({.kind = RunEvent::Kind::Line, .line = TimedLine(message)});
    if (file.Log(message)) return true;
    if (!isLossTold) {
        const std::wstring loss = L"This log isn't kept: \"" + filePath + L"\" can't be written.";
        feed.Add({.kind = RunEvent::Kind::Line, .line = TimedLine(loss)});
    }
    isLossTold = true;
    return false;
}

void CProgressInterface::Start(const MetricSelection& selection, const std::vector<std::wstring>& names) {
    start = Clock::now();
    feed.Add({.kind = RunEvent::Kind::Line, .line = MeasuringLine(selection, names)});
}

void CProgressInterface::SetMinimum(int value) {
    minimum = value;
    ShowRange();
}

void CProgressInterface::SetMaximum(int value) {
    maximum = value;
    ShowRange();
}

void CProgressInterface::ShowRange() {
    feed.Add({.kind = RunEvent::Kind::Range, .first = minimum, .last = maximum});
}

void CProgressInterface::SetPosition(int position) {
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    feed.Add({.kind = RunEvent::Kind::Position, .first = position, .seconds = seconds});
}

void CProgressInterface::Finish() {
    feed.Add({.kind = RunEvent::Kind::FramesOver});
}
