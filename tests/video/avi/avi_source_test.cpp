#include "video/sources/avi_source.h"

#include <cstring>

#include "tests/video/avi/riff_builder.h"
#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/avi/video_file.h"
#include "video/sources/create_source.h"

namespace {

using AviSource = SourceFiles;

constexpr int kNone = -1;
const std::string kDib = "DIB ";
const std::string kDibZero = {'D', 'I', 'B', '\0'};
const std::string kZero(4, '\0');
const std::string kBitFields("\3\0\0\0", 4);

StreamFields Fields(const std::string& handler, const std::string& compression, int bits, int width = 16,
                    int height = 16) {
    return {.handler = handler,
            .width = width,
            .height = height,
            .bitsPerPixel = bits,
            .compression = compression};
}

TEST_F(AviSource, CodesAndDepthDecideHowSamplesAreRead) {
    const std::tuple<const char*, StreamFields, int, int> kCases[] = {
        {"24 bits", Fields(kDib, kZero, 24), 0, RGB24},
        {"32 bits", Fields(kDibZero, kZero, 32), 0, RGB32},
        {"24 bits, nobody's", Fields(kZero, kZero, 24), 0, RGB24},
        {"8 bits", Fields(kDib, kZero, 8), rkAviSource::OpenFailed, kNone},
        {"32 bits, masks that aren't there", Fields(kDib, kBitFields, 32), 0, RGB32},
        {"16 bits under masks", Fields(kDib, kBitFields, 16), rkAviSource::OpenFailed, kNone},
        {"a codec's handler with masks", Fields("MJPG", kBitFields, 32), rkAviSource::NoDecompressor, kNone},
        {"planar by the handler", Fields("YV12", kZero, 12), 0, YV12},
        {"planar by the format", Fields(kDib, "YV12", 12), 0, YV12},
        {"planar in spite of the handler", Fields("YUY2", "YV12", 12), 0, YV12},
        {"4:2:2 by the handler", Fields("YUY2", kZero, 16), 0, YUY2},
        {"planar of odd sides, which no frame can hold", Fields("YV12", "YV12", 12, 15, 15), 0, RGB24},
        {"4:2:2 by the format", Fields(kDibZero, "YUY2", 16), 0, YUY2},
        {"unknown codec", Fields("zzzz", "zzzz", 24), rkAviSource::NoDecompressor, kNone},
        {"a width that isn't one", Fields(kDib, kZero, 24, -16), rkAviSource::BadFormat, kNone},
        {"the lowest height", Fields(kDib, kZero, 24, 16, INT32_MIN), rkAviSource::BadFormat, kNone},
        {"a frame of 2 GiB", Fields(kDib, kZero, 32, 1 << 15, 1 << 14), rkAviSource::BadFormat, kNone},
        {"compressed, 3 GiB", Fields("MJPG", "MJPG", 24, 1 << 15, 1 << 15), rkAviSource::BadFormat, kNone},
    };
    for (const auto& [what, fields, code, colorSpace] : kCases) {
        SCOPED_TRACE(what);
        rkAviSource source;
        EXPECT_EQ(code, source.Open(Write(L"a.avi", AviBytes(fields, {"sample"})), true, false));
        EXPECT_EQ(code == 0 ? fields.width : 0, source.GetWidth());
        EXPECT_EQ(code == 0 ? 1 : 0, source.GetFrameCount());
        EXPECT_EQ(colorSpace, code == 0 ? source.GetColorSpace() : kNone);
    }
    rkAviSource source;
    const std::string audio = Riff(List("hdrl", MainHeader(0, 1) + StreamList({.type = "auds"})));
    EXPECT_EQ(rkAviSource::OpenStreamFailed, source.Open(Write(L"a.avi", audio), true, false));
    EXPECT_EQ(rkAviSource::BadFormat, source.Open(Write(L"a.avi", AviBytes({}, {})), true, false));
    EXPECT_EQ(L"Error when reading file \"" + directory + L"/a.avi\": Stream contains bad format data!",
              ErrorText(source, rkAviSource::BadFormat));
}

/// Rows of the pictures are "aaa", "bbb", ...; a packed frame has the lowest row first, with its filling.
TEST_F(AviSource, RowsComeFromTheBottomUp) {
    const std::string oddRows("ccc.\0\0\0\0bbb.\0\0\0\0aaa.\0\0\0\0", 24);
    const std::tuple<const char*, StreamFields, std::string, std::string> kCases[] = {
        {"24 bits", Fields(kDib, kZero, 24, 1, 2), "bbb.aaa.", "bbb.aaa."},
        {"24 bits from the top", Fields(kDib, kZero, 24, 1, -3), "aaa.bbb.ccc.", "ccc.bbb.aaa."},
        {"32 bits, even", Fields(kDib, kZero, 32, 2, 2), "bbb.bbb.aaa.aaa.", "bbb.bbb.aaa.aaa."},
        {"32 bits, odd", Fields(kDib, kZero, 32, 1, 3), "ccc.bbb.aaa.", oddRows},
        {"32 bits, odd, from the top", Fields(kDib, kZero, 32, 1, -3), "aaa.bbb.ccc.", oddRows},
        {"planar", Fields("YV12", "YV12", 12, 2, -2), "YYyyVU", "YYyyVU"},
        {"4:2:2", Fields("YUY2", "YUY2", 16, 2, -2), "YUYVyuyv", "YUYVyuyv"},
    };
    for (const auto& [what, fields, sample, expected] : kCases) {
        SCOPED_TRACE(what);
        rkAviSource source;
        ASSERT_EQ(0, source.Open(Write(L"a.avi", AviBytes(fields, {sample})), false, false));
        EXPECT_EQ(std::abs(fields.height), source.GetHeight());
        Bytes frame(expected.size());
        ASSERT_EQ(0, source.ReadFrame(frame.data(), 0));
        EXPECT_EQ(expected, std::string(frame.begin(), frame.end()));
    }
}

TEST_F(AviSource, NumbersFramesAsTheStreamDoes) {
    const StreamFields fields = {
        .handler = "YUY2", .start = 7, .width = 2, .height = 1, .bitsPerPixel = 16, .compression = "YUY2"};
    const std::wstring name = Write(L"a.avi", AviBytes(fields, {"aaaa", "", "ccc", "ddddd", "eeee"}));
    rkAviSource source;
    ASSERT_EQ(0, source.Open(name, true, false));
    EXPECT_EQ(L"file \"" + name + L"\", reading YUY2, raw stream", FullDescription(source));
    for (const int bad : {0, 6, 12, -1})
        EXPECT_EQ(rkAviSource::BadFrameNumber, source.ReadFrame(nullptr, bad));
    EXPECT_EQ(rkAviSource::NullPointer, source.ReadFrame(nullptr, 7));

    EXPECT_EQ("aaaa", ReadBytes(source, 7));
    rkVideoImage image;
    image.Create(2, 1, YUY2, 0);
    std::memset(image.Data(), '=', 64);
    for (const char* what : {"dropped", "and again"})
        EXPECT_EQ(rkAviSource::ReadFailed, source.ReadNextFrameImage(image)) << what;
    EXPECT_EQ(1, source.GetCurrentFrame()) << "where it failed";
    for (const int failing : {9, 10})  // too short, too long
        EXPECT_EQ(rkAviSource::ReadFailed, source.ReadFrameImage(image, failing)) << failing;
    EXPECT_EQ(3, source.GetCurrentFrame());
    EXPECT_EQ('=', image.Data()[0]) << "no sample that isn't a frame shows";
    EXPECT_EQ("eeee", ReadBytes(source, 11));
    EXPECT_TRUE(source.IsEndOfVideo());
    EXPECT_EQ("####", ReadBytes(source)) << "behind the end the buffer stays";
}

TEST_F(AviSource, DecompressorsGiveWhatIsAskedForOrRgb) {
    const std::tuple<const char*, std::uint32_t, int, int, bool, int> kCases[] = {
        {"4:2:0", FourCC('M', 'J', 'P', 'G'), 16, 16, true, YV12},
        {"nobody wants planes", FourCC('M', 'J', 'P', 'G'), 16, 16, false, RGB24},
        {"width 722", FourCC('M', 'J', 'P', 'G'), 722, 16, true, RGB24},
        {"odd height", FourCC('M', 'J', 'P', 'G'), 16, 15, true, RGB24},
        {"a codec of RGB", FourCC('U', 'L', 'R', 'G'), 32, 16, true, RGB24},
        {"frames that refer to others", FourCC('F', 'M', 'P', '4'), 32, 16, true, YV12},
    };
    for (const auto& [what, handler, width, height, preferPlanar, colorSpace] : kCases) {
        SCOPED_TRACE(what);
        const std::wstring name = directory + L"/a.avi";
        rkCompressorSettings settings;
        settings.fccType = kFccVideoCodec;
        settings.fccHandler = handler;
        rkVideoFile file;
        ASSERT_TRUE(file.OpenWriterWithSettings(name, width, height, 1, 25, settings));
        rkVideoImage image;
        for (const std::uint8_t grey : Bytes{40, 90, 140}) {
            Load(image, width, height, RGB24, Bytes(RandomFrame(RGB24, width, height).size(), grey));
            ASSERT_TRUE(file.WriteImage(image));
        }
        ASSERT_TRUE(file.CloseWriter());

        const auto source = rkCreateVideoSource(name, preferPlanar);
        ASSERT_NE(nullptr, source);
        EXPECT_EQ(colorSpace, source->GetColorSpace());
        EXPECT_NE(std::wstring::npos, FullDescription(*source).find(L", decompressor "));
        for (const int i : {0, 2, 1}) {
            ASSERT_EQ(0, source->ReadFrameImage(image, i));
            const int grey = 40 + 50 * i;
            const int expected = colorSpace == RGB24 ? grey : 16 + grey * 219 / 255;
            EXPECT_NEAR(expected, image.Row(0, 0)[0], 4) << "but for the quantizer";
        }
    }
}

TEST_F(AviSource, ScriptsAreReadThroughTheFileInterface) {
    const auto source = [](const std::string& file) {
        return "AviSource(\"" + file + "\", audio = false, pixel_type = \"RGB24\")";
    };
    const std::string frames[] = {"bbbbbbbbbbbbaaaaaaaaaaaa", "ddddddddddddcccccccccccc"};
    const StreamFields fields = Fields(kDib, kZero, 24, 4, 2);
    const std::wstring clip = Write(L"a.avi", AviBytes(fields, {frames[0], frames[1]}));
    rkAviSource script;
    ASSERT_EQ(0, script.Open(Write(L"a.avs", source(ToUtf8(clip))), true, true));
    EXPECT_EQ(2, script.GetFrameCount());
    EXPECT_TRUE(script.GetRate() == 25 && script.GetScale() == 1);
    Bytes frame(24);
    for (const int number : {1, 0}) {
        ASSERT_EQ(0, script.ReadFrame(frame.data(), number));
        EXPECT_EQ(frames[number], std::string(frame.begin(), frame.end()));
    }
    EXPECT_EQ(rkAviSource::BadFrameNumber, script.ReadFrame(frame.data(), 2));
    for (const std::wstring& none : {directory, directory + L"/none.avs", clip, Write(L"empty.avs", ""),
                                     Write(L"b.avs", "NoSource(\"a\")"), Write(L"c.avs", source("none.avi"))})
        EXPECT_EQ(rkAviSource::OpenFailed, script.Open(none, true, true)) << ToUtf8(none);
}

}  // namespace
