#include "report/rules/report_text.h"

#include <array>
#include <cwchar>

namespace Report {

std::wstring ValueText(float value) {
    std::array<wchar_t, 64> text{};  // the largest float has 39 digits before the point
    std::swprintf(text.data(), text.size(), L"%.4f", static_cast<double>(value));
    return text.data();
}

std::wstring PointText(const std::map<int, Series>& series, int frame) {
    std::wstring text = L"Frame " + std::to_wstring(frame);
    for (const auto& [file, curve] : series) {
        float value = 0;
        if (!curve.ValueAt(frame, value)) continue;
        text +=
            std::wstring(L"\n") + kFileNames.at(static_cast<std::size_t>(file)) + L": " + ValueText(value);
    }
    return text;
}

std::wstring PlotDescription(const std::map<int, Series>& series, int firstFrame, int lastFrame,
                             int current) {
    std::wstring text = L"Frame " + std::to_wstring(current) + L" of " + std::to_wstring(firstFrame) +
                        L" to " + std::to_wstring(lastFrame) + L".";
    for (const auto& [file, curve] : series) {
        float value = 0;
        if (!curve.ValueAt(current, value)) continue;
        text += std::wstring(L" ") + kFileNames.at(static_cast<std::size_t>(file)) + L" " + ValueText(value) +
                L".";
    }
    return text;
}

std::wstring FrameDescription(int file, int frame) {
    return std::wstring(kFileNames.at(static_cast<std::size_t>(file))) + L", frame " + std::to_wstring(frame);
}

std::wstring FrameTitle(int file, int frame) {
    return L"Tolvane - " + FrameDescription(file, frame);
}

std::wstring NeedsFileText(int file) {
    return std::wstring(L"Needs the file \"") + kFileNames.at(static_cast<std::size_t>(file)) +
           L"\" in the run";
}

std::wstring NeedsResultsText(int file) {
    return std::wstring(L"Needs results of the file \"") + kFileNames.at(static_cast<std::size_t>(file)) +
           L"\"";
}

std::wstring FrameCountText(int count) {
    return std::to_wstring(count) + (count == 1 ? L" frame" : L" frames");
}

}  // namespace Report
