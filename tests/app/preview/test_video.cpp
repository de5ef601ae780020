#include "tests/app/preview/test_video.h"

#include <chrono>
#include <thread>
#include <vector>

#include "platform/text.h"

int TestVideo::ReadFrameImage(rkVideoImage& image, int frame) {
    ++record->reads;
    while (record->isHeld) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (IsBadFrameNumber(frame) || frame == record->badFrame) return 1;
    image.Create(width, height, RGB24, 0);
    std::vector<std::uint8_t> packed(image.PackedFrameBytes());
    const auto rowBytes = packed.size() / static_cast<std::size_t>(height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* pixel = &packed[static_cast<std::size_t>(height - 1 - y) * rowBytes];
        for (int x = 0; x < width; ++x, pixel += 3) {
            pixel[0] = static_cast<std::uint8_t>(4 * x);
            pixel[1] = static_cast<std::uint8_t>(y);
            pixel[2] = static_cast<std::uint8_t>(frame);
        }
    }
    image.LoadFrame(packed.data());
    return 0;
}

void TestVideo::GetErrorText(int, wchar_t* buffer, int size) {
    CopyText(L"Failed to read frame!", buffer, size);
}
