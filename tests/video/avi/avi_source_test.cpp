#include "video/sources/avi_source.h"

#include <cstring>

#include "tests/video/avi/riff_builder.h"
#include "tests/video/packed_frame.h"
#include "tests/video/sources/source_files.h"
#include "video/avi/video_file.h"
#include "video/color_space.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

using AviSource = SourceFiles;

constexpr int kNone = -1;
const std::string kDib = "DIB ";
const std::string kDibZero = {'D', 'I', 'B', '\0'};
const std::string kZero(4, '\0');
const std::string kBitFields("\3\0\0\0", 4);

StreamFields Fields(const std::string& handler, const std::string& compression, int bits, int width = 16,
                    int height = 16) {
    StreamFields fields;
    fields.handler = handler;
    fields.compression = compression;
    fields.bitsPerPixel = bits;
    fields.width = width;
    fields.height = height;
    return fields;
}

TEST_F(AviSource, CodesAndDepthDecideHowSamplesAreRead) {
    const struct {
        const char* what;
        StreamFields fields;
        int code, colorSpace;
    } kCases[] = {
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
        {"a compressed frame of 3 GiB", Fields("MJPG", "MJPG", 24, 1 << 15, 1 << 15), rkAviSource::BadFormat,
         kNone},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkAviSource source;
        const std::wstring name = Write(L"a.avi", AviFile(c.fields, {"sample"}));
        EXPECT_EQ(c.code, source.Open(name, true, false));
        EXPECT_EQ(c.code == 0 ? c.fields.width : 0, source.GetWidth());
        EXPECT_EQ(c.code == 0 ? 1 : 0, source.GetFrameCount());
        EXPECT_EQ(c.colorSpace, c.code == 0 ? source.GetColorSpace() : kNone);
    }
    rkAviSource source;
    const std::string audio = Riff(List("hdrl", MainHeader(0, 1) + StreamList({.type = "auds"})));
    EXPECT_EQ(rkAviSource::OpenStreamFailed, source.Open(Write(L"a.avi", audio), true, false));
    EXPECT_EQ(rkAviSource::BadFormat, source.Open(Write(L"a.avi", AviFile({}, {})), true, false));
    const std::wstring text = L"\": Stream contains bad format data!";
    EXPECT_EQ(L"Error when reading file \"" + directory + L"/a.avi" + text,
              ErrorText(source, rkAviSource::BadFormat));
}

/// Rows of the pictures are "aaa", "bbb", ...; a packed frame has the lowest row first, with its filling.
TEST_F(AviSource, RowsComeFromTheBottomUp) {
    using namespace std::string_literals;
    const struct {
        const char* what;
        StreamFields fields;
        std::string sample, frame;
    } kCases[] = {
        {"24 bits", Fields(kDib, kZero, 24, 1, 2), "bbb.aaa."s, "bbb.aaa."s},
        {"24 bits from the top", Fields(kDib, kZero, 24, 1, -3), "aaa.bbb.ccc."s, "ccc.bbb.aaa."s},
        {"32 bits, even", Fields(kDib, kZero, 32, 2, 2), "bbb.bbb.aaa.aaa."s, "bbb.bbb.aaa.aaa."s},
        {"32 bits, odd", Fields(kDib, kZero, 32, 1, 3), "ccc.bbb.aaa."s,
         "ccc.\0\0\0\0bbb.\0\0\0\0aaa.\0\0\0\0"s},
        {"32 bits, odd, from the top", Fields(kDib, kZero, 32, 1, -3), "aaa.bbb.ccc."s,
         "ccc.\0\0\0\0bbb.\0\0\0\0aaa.\0\0\0\0"s},
        {"planar", Fields("YV12", "YV12", 12, 2, -2), "YYyyVU", "YYyyVU"},
        {"4:2:2", Fields("YUY2", "YUY2", 16, 2, -2), "YUYVyuyv", "YUYVyuyv"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkAviSource source;
        ASSERT_EQ(0, source.Open(Write(L"a.avi", AviFile(c.fields, {c.sample})), false, false));
        EXPECT_EQ(std::abs(c.fields.height), source.GetHeight());
        const auto bytes = PackedFrameBytes(source.GetColorSpace(), source.GetWidth(), source.GetHeight());
        std::string frame(static_cast<std::size_t>(bytes), '#');
        ASSERT_EQ(0, source.ReadFrame(reinterpret_cast<std::uint8_t*>(frame.data()), 0));
        EXPECT_EQ(c.frame, frame);
    }
}

TEST_F(AviSource, NumbersFramesAsTheStreamDoes) {
    StreamFields fields = Fields("YUY2", "YUY2", 16, 2, 1);
    fields.start = 7;
    const std::wstring name = Write(L"a.avi", AviFile(fields, {"aaaa", "", "ccc", "ddddd", "eeee"}));
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
    const struct {
        const char* what;
        std::uint32_t handler;
        int width, height;
        bool preferPlanar;
        int colorSpace;
    } kCases[] = {
        {"4:2:0", FourCC('M', 'J', 'P', 'G'), 16, 16, true, YV12},
        {"nobody wants planes", FourCC('M', 'J', 'P', 'G'), 16, 16, false, RGB24},
        {"width 722", FourCC('M', 'J', 'P', 'G'), 722, 16, true, RGB24},
        {"odd height", FourCC('M', 'J', 'P', 'G'), 16, 15, true, RGB24},
        {"a codec of RGB", FourCC('U', 'L', 'R', 'G'), 32, 16, true, RGB24},
        {"frames that refer to others", FourCC('F', 'M', 'P', '4'), 32, 16, true, YV12},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const std::wstring name = directory + L"/a.avi";
        rkCompressorSettings settings;
        settings.fccType = kFccVideoCodec;
        settings.fccHandler = c.handler;
        rkVideoFile file;
        ASSERT_TRUE(file.OpenWriterWithSettings(name, c.width, c.height, 1, 25, settings));
        rkVideoImage image;
        image.Create(c.width, c.height, RGB24, 0);
        for (const int grey : {40, 90, 140}) {
            image.LoadFrame(Bytes(image.PackedFrameBytes(), static_cast<std::uint8_t>(grey)).data());
            ASSERT_TRUE(file.WriteImage(image));
        }
        ASSERT_TRUE(file.CloseWriter());

        const auto source = rkCreateVideoSource(name, c.preferPlanar);
        ASSERT_NE(nullptr, source);
        EXPECT_EQ(c.colorSpace, source->GetColorSpace());
        EXPECT_NE(std::wstring::npos, FullDescription(*source).find(L", decompressor "))
            << "before a frame is read";
        for (const int i : {0, 2, 1}) {
            ASSERT_EQ(0, source->ReadFrameImage(image, i));
            const int grey = 40 + 50 * i;
            const int expected = c.colorSpace == RGB24 ? grey : 16 + grey * 219 / 255;
            EXPECT_NEAR(expected, image.Row(0, 0)[0], 4) << "but for the quantizer";
        }
    }
}

TEST_F(AviSource, ScriptsAreReadThroughTheFileInterface) {
    Write(L"a.avi", AviFile(Fields(kDib, kZero, 24, 1, 2), {"bbb.aaa.", "ddd.ccc."}));
    const std::wstring script = Write(
        L"a.avs", "AviSource(\"" + ToUtf8(directory) + "/a.avi\", audio = false, pixel_type = \"RGB24\")");
    const auto source = rkCreateVideoSource(script, true);
    ASSERT_NE(nullptr, source);
    EXPECT_EQ(2, source->GetFrameCount());
    std::string frame(8, '#');
    ASSERT_EQ(0, source->ReadFrame(reinterpret_cast<std::uint8_t*>(frame.data()), 1));
    EXPECT_EQ("ddd", frame.substr(0, 3));
    EXPECT_EQ("ccc", frame.substr(4, 3));
    EXPECT_EQ(nullptr, rkCreateVideoSource(Write(L"b.avs", "AviSource(\"none.avi\")"), true));
}

}  // namespace
