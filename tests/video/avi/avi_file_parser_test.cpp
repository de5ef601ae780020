#include "video/avi/avi_file_parser.h"

#include "platform/vfw/bitmap_format.h"
#include "platform/vfw/stream_info.h"
#include "tests/video/avi/riff_builder.h"
#include "tests/video/sources/source_files.h"

namespace {

using AviFileParser = SourceFiles;

constexpr int kFrameBytes = 16 * 16 * 3;

TEST_F(AviFileParser, ScriptsClipAsAStream) {
    const std::vector<std::string> frames = {FrameBytes(0, kFrameBytes), FrameBytes(1, kFrameBytes)};
    const std::wstring clip = Write(L"clip.avi", AviFile(StreamFields(), frames));
    const rkAviFileParser parser(
        Write(L"a.avs", "AviSource(\"" + ToUtf8(clip) + "\", audio = false, pixel_type = \"RGB24\")"));
    ASSERT_FALSE(parser.Failed());
    EXPECT_EQ(nullptr, parser.GetStream(0, rkStreamContainer::Audio));
    rkIRawDataStream* stream = parser.GetStream(0, rkStreamContainer::Video);
    ASSERT_NE(nullptr, stream);
    EXPECT_EQ(0, stream->GetStart());
    EXPECT_EQ(1, stream->GetEnd());
    EXPECT_TRUE(stream->IsKeyFrame(0) && stream->IsKeyFrame(1));
    EXPECT_FALSE(stream->IsKeyFrame(2));

    std::uint8_t buffer[kFrameBytes];
    for (int i = 0; i < 2; ++i) {
        int bytes = -1;
        EXPECT_FALSE(stream->ReadSample(i, nullptr, 0, &bytes)) << "asked for the size";
        EXPECT_EQ(kFrameBytes, bytes);
        EXPECT_FALSE(stream->ReadSample(i, buffer, kFrameBytes - 1, &bytes));
        ASSERT_TRUE(stream->ReadSample(i, buffer, kFrameBytes, &bytes));
        EXPECT_EQ(frames[static_cast<std::size_t>(i)], std::string(buffer, buffer + bytes));
    }
    int bytes = -1;
    EXPECT_FALSE(stream->ReadSample(2, buffer, kFrameBytes, &bytes));

    ASSERT_EQ(kBitmapFormatBytes, stream->GetFormatSize());
    EXPECT_FALSE(stream->GetFormat(buffer, kBitmapFormatBytes - 1));
    ASSERT_TRUE(stream->GetFormat(buffer, kBitmapFormatBytes));
    const BITMAPINFOHEADER format = LoadBitmapFormat(buffer);
    AVISTREAMINFOW info = {};
    ASSERT_TRUE(stream->GetStreamInfo(&info));
    EXPECT_EQ((std::vector<unsigned>{24, 0, 25, 1}),
              (std::vector<unsigned>{format.biBitCount, format.biCompression, info.dwRate, info.dwScale}));
}

TEST_F(AviFileParser, WhatIsNoSoundScriptFails) {
    const std::wstring clip = Write(L"clip.avi", AviFile(StreamFields(), {"frame"}));
    for (const std::wstring& name : {directory, directory + L"/none.avs", clip, Write(L"empty.avs", ""),
                                     Write(L"a.avs", "NoSource(\"a\")"),
                                     Write(L"b.avs", "AviSource(\"" + ToUtf8(directory) + "/none.avi\")")}) {
        SCOPED_TRACE(ToUtf8(name));
        const rkAviFileParser parser(name);
        EXPECT_TRUE(parser.Failed());
        EXPECT_EQ(nullptr, parser.GetStream(0, rkStreamContainer::Video));
    }
}

}  // namespace
