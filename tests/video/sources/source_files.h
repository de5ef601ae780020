#pragma once

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/raw_layout.h"
#include "video/video_source.h"

/// A directory of the test's own for the small files it writes.
struct SourceFiles : testing::Test {
    std::wstring Write(const wchar_t* name, std::string_view bytes) const {
        return FromUtf8(temporary.Write(ToUtf8(name), bytes));
    }

    TemporaryDirectory temporary;
    std::wstring directory = FromUtf8(temporary.Root().native());
};

/// Bytes that differ from frame to frame and within a frame.
inline std::string FrameBytes(int frame, int bytes) {
    std::string content;
    for (int i = 0; i < bytes; ++i) content += static_cast<char>(frame * 101 + i * 7 + i / 37);
    return content;
}

/// The frame with that number, or the next one for -1; empty on any error.
inline std::string ReadBytes(rkIVideoSource& source, int frame = -1) {
    const int bytes = RawFrameBytes(source.GetColorSpace(), source.GetWidth(), source.GetHeight());
    std::string content(static_cast<std::size_t>(bytes), '#');
    auto* buffer = reinterpret_cast<std::uint8_t*>(content.data());
    return (frame < 0 ? source.ReadNextFrame(buffer) : source.ReadFrame(buffer, frame)) == 0 ? content : "";
}

/// Of a source or a writer.
std::wstring ErrorText(auto& stream, int code) {
    wchar_t text[300] = L"";
    stream.GetErrorText(code, text, 300);
    return text;
}

inline std::wstring FullDescription(rkIVideoSource& source) {
    wchar_t text[300] = L"";
    source.GetFullDescription(text, 300);
    return text;
}
