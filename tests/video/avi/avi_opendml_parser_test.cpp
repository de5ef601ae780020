#include "video/avi/avi_opendml_parser.h"

#include <fstream>
#include <optional>

#include "platform/vfw/bitmap_format.h"
#include "platform/vfw/stream_info.h"
#include "tests/video/avi/riff_builder.h"
#include "tests/video/sources/source_files.h"

namespace {

using AviOpenDMLParser = SourceFiles;

const StreamFields kVideo;
const StreamFields kAudio = {.type = "auds"};

std::string Headers(const std::string& behindFormat = "") {
    return List("hdrl", MainHeader(2, 1) + StreamList(kVideo, behindFormat));
}

/// A sample, or nothing if it can't be read; the size of its bytes is asked first.
std::optional<std::string> Sample(rkIRawDataStream& stream, int number) {
    int bytes = -1;
    stream.ReadSample(number, nullptr, 0, &bytes);
    std::string data(static_cast<std::size_t>(bytes), '#');
    if (!stream.ReadSample(number, reinterpret_cast<std::uint8_t*>(data.data()), bytes, &bytes)) return {};
    return data;
}

std::vector<std::string> Samples(rkIRawDataStream& stream) {
    std::vector<std::string> samples;
    for (int i = stream.GetStart(); i <= stream.GetEnd(); ++i)
        samples.push_back(Sample(stream, i).value_or("unreadable"));
    return samples;
}

std::string KeyFrames(rkIRawDataStream& stream) {
    std::string keys;
    for (int i = 0; i < stream.GetLength(); ++i) keys += stream.IsKeyFrame(i) ? 'k' : '-';
    return keys;
}

/// Samples at 0, 12 and 24 bytes from the first one, which stands 12 bytes behind the headers.
const std::string kMovi = List("movi", Chunk("00dc", "one") + Chunk("00dc", "twin") + Chunk("00dc", ""));
const std::vector<std::string> kMoviSamples = {"one", "twin", ""};

TEST_F(AviOpenDMLParser, EveryKindOfIndexFindsTheSamples) {
    constexpr std::uint64_t kBefore = 12 + 12;  // of the first sample, the beginnings of RIFF chunk and list
    const std::uint64_t first = kBefore + Headers().size();
    const auto idx1 = [&](std::uint64_t base, const std::string& between, std::uint64_t emptyAt) {
        return Headers() + kMovi +
               Chunk("idx1", Idx1Entry("00dc", base, 3) + between + Idx1Entry("00dc", base + 12, 4, false) +
                                 Idx1Entry("00dc", emptyAt, 0) + "rest");
    };
    // An index of chunks tells where the bytes are, behind the 8 of the header.
    const auto entries = [](std::uint64_t base, bool fields) {
        const std::string more = fields ? Word(77) : "";
        return Word(base + 8) + Word(3) + more + Word(base + 20) + Word(4 | kNoKey) + more + Word(0) +
               Word(0) + more;
    };
    const auto direct = [&](std::uint64_t base, bool fields) {
        const auto headers = [&](std::uint64_t start) {
            const std::string index = entries(start - base, fields);
            return Headers(Chunk("indx", Index(fields ? 3 : 2, 1, 3, "00dc", base, index)));
        };
        return headers(kBefore + headers(0).size()) + kMovi;
    };
    const struct {
        const char* what;
        std::string data;
    } kCases[] = {
        {"idx1 from the movi list", idx1(4, "", 24)},
        {"idx1 from the file", idx1(first, "", first + 24)},
        {"idx1 from the file, no offset for the empty one", idx1(first, "", 0)},
        {"idx1 behind an indx that is only kept free",
         Headers(Chunk("indx", std::string(99, '\0'))) + kMovi +
             idx1(4, "", 24).substr(Headers().size() + kMovi.size())},
        {"idx1 that lists lists", idx1(4, Idx1Entry("rec ", 4, 99), 24)},
        {"indx of chunks", direct(0, false)},
        {"indx of chunks in two fields", direct(0, true)},
        {"indx of chunks, offsets from elsewhere", direct(100, false)},
        {"indx, then an idx1 that is skipped", direct(0, false) + Chunk("idx1", Idx1Entry("99xx", 4, 5))},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkAviOpenDMLParser parser(Write(L"a.avi", Riff(c.data)));
        ASSERT_FALSE(parser.Failed());
        rkIRawDataStream* stream = parser.GetStream(0, rkStreamContainer::Video);
        ASSERT_NE(nullptr, stream);
        EXPECT_EQ(kMoviSamples, Samples(*stream));
        EXPECT_EQ("k-k", KeyFrames(*stream));
        EXPECT_EQ(nullptr, parser.GetStream(1, rkStreamContainer::Video));
        EXPECT_EQ(nullptr, parser.GetStream(0, rkStreamContainer::Audio));
    }
}

/// Segments beyond 4 GiB in a file with a hole, with entries of two and of three words.
TEST_F(AviOpenDMLParser, SuperIndexOverSeveralSegments) {
    constexpr std::uint64_t kFar = (std::uint64_t{5} << 30) + 1;
    const std::string superIndex =
        Index(4, 0, 2, "00dc", 0, SuperIndexEntry(2000) + SuperIndexEntry(kFar)) + std::string(64, '\0');
    const std::string head = Riff(Headers(Chunk("indx", superIndex)) + List("movi", std::string(4000, '.')));
    const std::string near =
        Chunk("ix00", Index(2, 1, 2, "00dc", 1000, Word(8) + Word(3) + Word(20) + Word(4)));
    const std::string far =
        Chunk("ix00", Index(3, 1, 1, "00dc", kFar + 500, Word(8) + Word(3 | kNoKey) + Word(0)));

    const std::wstring name = Write(L"a.avi", head);
    std::fstream file(ToUtf8(name), std::ios::in | std::ios::out | std::ios::binary);
    const auto put = [&](std::uint64_t offset, const std::string& bytes) {
        file.seekp(static_cast<std::streamoff>(offset)) << bytes;
    };
    put(1000, Chunk("00dc", "one") + Chunk("00dc", "twin"));
    put(2000, near);
    put(kFar, far);
    put(kFar + 500, Chunk("00dc", "far"));
    file.close();

    rkAviOpenDMLParser parser(name);
    ASSERT_FALSE(parser.Failed());
    rkIRawDataStream* stream = parser.GetStream(0, rkStreamContainer::Video);
    ASSERT_NE(nullptr, stream);
    EXPECT_EQ((std::vector<std::string>{"one", "twin", "far"}), Samples(*stream));
    EXPECT_EQ("kk-", KeyFrames(*stream));
}

TEST_F(AviOpenDMLParser, FilesThatContradictThemselvesFail) {
    const std::string strh = StreamHeader(kVideo), strf = StreamFormat(kVideo), strl = StreamList(kVideo);
    const auto hdrl = [](const std::string& data) { return List("hdrl", MainHeader(2, 2) + data); };
    const auto headers = [&](const std::string& data) { return Riff(hdrl(List("strl", data))); };
    const auto indexed = [](const std::string& index) { return Riff(Headers(Chunk("indx", index)) + kMovi); };
    const auto files = [&](const std::string& entry) {
        return Riff(Headers() + kMovi + Chunk("idx1", entry));
    };
    const auto superIndex = [&](int entries, std::uint64_t offset) {
        std::string list;
        for (int i = 0; i < entries; ++i) list += SuperIndexEntry(offset);
        return Index(4, 0, static_cast<unsigned>(entries), "00dc", 0, list);
    };
    const std::string oneEntry = Word(8) + Word(3);
    const std::string chunkIndex = Chunk("ix00", Index(2, 1, 1, "00dc", 0, oneEntry));
    const std::string largeIndex = Chunk("ix00", Index(2, 1, 1000, "00dc", 0, std::string(8000, '\0')));
    std::string nested;
    for (int i = 0; i < 40; ++i) nested = List("hdrl", nested);
    const auto behind = [](const std::string& index, const std::string& chunk) {
        return Riff(Headers(Chunk("indx", index)) + chunk);
    };
    const std::uint64_t ix = 12 + Headers(Chunk("indx", superIndex(1, 0))).size();  // behind such headers
    const StreamFields late = {.start = 1u << 31};

    const struct {
        const char* what;
        std::string file;
        bool failed;
    } kCases[] = {
        {"another form", Riff(Headers(), "WAVE"), true},
        {"no room for a form", ChunkOfSize("RIFF", 3, "AVI "), true},
        {"RIFF in RIFF", Riff(Riff(Headers())), true},
        {"list without a type", Riff(ChunkOfSize("LIST", 3, "strl")), true},
        {"nothing but hdrl in hdrl", Riff(nested), true},
        {"two headers of one stream", headers(strh + strh), true},
        {"a header without a format", headers(strh), true},
        {"and another stream behind", Riff(hdrl(List("strl", strh) + strl)), true},
        {"a format without a header", headers(strf), true},
        {"two formats", headers(strh + strf + strf), true},
        {"a format of 2 GiB", headers(strh + ChunkOfSize("strf", 1u << 31, "")), true},
        {"sample numbers beyond int", headers(StreamHeader(late) + strf), true},
        {"sound with numbers beyond int", Riff(hdrl(strl + StreamList({.type = "auds", .start = ~0u}))),
         false},
        {"more chunks than any file has", Riff(Headers() + std::string(8 * (1 << 20), '\0') + kMovi), true},
        {"two streams", Riff(hdrl(strl + strl)), false},
        {"more streams than the main header says", Riff(hdrl(strl + strl + strl)), true},
        {"a stream before the main header", Riff(List("hdrl", strl + MainHeader(2, 2))), true},
        {"idx1 before movi", Riff(Headers() + Chunk("idx1", Idx1Entry("00dc", 4, 3))), true},
        {"idx1 of the last stream", files(Idx1Entry("00dc", 4, 3)), false},
        {"idx1 beyond the streams", files(Idx1Entry("01dc", 4, 3)), true},
        {"idx1 without a number", files(Idx1Entry("ix00", 4, 3)), true},
        {"idx1 cut",
         files("").substr(0, files("").size() - 8) + ChunkOfSize("idx1", 32, Idx1Entry("00dc", 4, 3)), true},
        {"index before the format", headers(strh + Chunk("indx", superIndex(0, 0)) + strf), true},
        {"index without a stream", headers(Chunk("indx", superIndex(0, 0))), true},
        {"index without entries", indexed(superIndex(0, 0)), false},
        {"index of something else", indexed(Index(2, 0x80, 9, "00dc", 0, "")), false},
        {"index of less than its head", indexed(Index(2, 1, 0, "00dc", 0, "").substr(0, 23)), true},
        {"entries beyond the index", indexed(Index(2, 1, 2, "00dc", 0, oneEntry)), true},
        {"four billion entries", indexed(Index(2, 1, 0xffffffff, "00dc", 0, oneEntry)), true},
        {"entries of one word", indexed(Index(1, 1, 1, "00dc", 0, oneEntry)), true},
        {"indexes beyond the index", indexed(Index(4, 0, 2, "00dc", 0, SuperIndexEntry(ix))), true},
        {"index of one index", behind(superIndex(1, ix), chunkIndex), false},
        {"the same large index again and again", behind(superIndex(100, ix + 99 * 16), largeIndex), true},
        {"index of an index of indexes", behind(superIndex(1, ix), Chunk("ix00", superIndex(1, ix))), true},
        {"index beyond the file", behind(superIndex(1, ix + 99), chunkIndex), true},
        {"index beyond any file", behind(superIndex(1, ~std::uint64_t{0}), chunkIndex), true},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkAviOpenDMLParser parser(Write(L"a.avi", c.file));
        EXPECT_EQ(c.failed, parser.Failed());
    }
    EXPECT_TRUE(rkAviOpenDMLParser(directory).Failed());
    EXPECT_TRUE(rkAviOpenDMLParser(directory + L"/none.avi").Failed());
}

TEST_F(AviOpenDMLParser, WhatTheWalkPassesOver) {
    const std::string sound = Headers() + kMovi + Chunk("idx1", Idx1Entry("00dc", 4, 3));
    const auto withExtended = [&](int frames) {
        const std::string dmlh = Chunk("dmlh", Word(frames) + std::string(244, '\0'));
        return Riff(List("hdrl", MainHeader(2, 1) + StreamList(kVideo) + List("odml", dmlh)) +
                    sound.substr(Headers().size()));
    };
    const struct {
        const char* what;
        std::string file;
        int length;
        unsigned totalFrames;
    } kCases[] = {
        {"an odd chunk", Riff(Chunk("JUNK", "odd") + sound), 1, 2},
        {"headers and index elsewhere",
         Riff(Chunk("strh", "") + Chunk("avih", "") + sound + Chunk("strf", "")), 1, 2},
        {"another RIFF of another form", Riff(sound) + Riff("", "WAVE"), 1, 2},
        {"a segment", Riff(sound) + Riff(Chunk("idx1", "") + List("hdrl", StreamHeader(kVideo)), "AVIX"), 1,
         2},
        {"a list to look into", Riff(ChunkOfSize("LIST", 4, "rec ") + sound), 1, 2},
        {"a size beyond the file", Riff(sound).replace(4, 4, Word(0x7fffffff)), 1, 2},
        {"zeros to the end", Riff(sound + std::string(1 << 20, '\0')), 1, 2},
        {"no index", Riff(Headers() + kMovi), 0, 2},
        {"more frames in all segments", withExtended(3), 1, 3},
        {"fewer frames in all segments", withExtended(1), 1, 2},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkAviOpenDMLParser parser(Write(L"a.avi", c.file));
        ASSERT_FALSE(parser.Failed());
        EXPECT_EQ(c.totalFrames, parser.GetTotalFrames());
        rkIRawDataStream* stream = parser.GetStream(0, rkStreamContainer::Video);
        ASSERT_NE(nullptr, stream);
        EXPECT_EQ(c.length, stream->GetLength());
        EXPECT_EQ(c.length > 0 ? "one" : "", Sample(*stream, 0).value_or(""));
    }
    rkAviOpenDMLParser empty(Write(L"a.avi", ""));
    EXPECT_FALSE(empty.Failed());
    EXPECT_EQ(nullptr, empty.GetStream(0, rkStreamContainer::Video));
}

TEST_F(AviOpenDMLParser, Stream) {
    const StreamFields video = {.handler = "MJPG", .rate = 2997, .start = 5, .height = -576};
    const std::string movi =
        List("movi", Chunk("01dc", "1234567") + Chunk("00wb", "sound") + Chunk("01dc", "cut"));
    const std::string index =
        Idx1Entry("01dc", 4, 7) + Idx1Entry("00wb", 20, 5) + Idx1Entry("01dc", 34, 0xffffffff, false);
    rkAviOpenDMLParser parser(
        Write(L"a.avi", Riff(List("hdrl", MainHeader(2, 2) + StreamList(kAudio) + StreamList(video)) + movi +
                             Chunk("idx1", index))));
    rkIRawDataStream* audio = parser.GetStream(0, rkStreamContainer::Audio);
    rkIRawDataStream* stream = parser.GetStream(0, rkStreamContainer::Video);
    ASSERT_TRUE(audio != nullptr && stream != nullptr);
    EXPECT_EQ(std::vector<std::string>{"sound"}, Samples(*audio));

    std::uint8_t buffer[40] = {};
    const int cut =
        4 + 8 + 48;  // bytes from the last sample to the end of the file: its own four, and the index
    const struct {
        int sample, bufferSize;
        bool read;
        int actualBytes;
    } kReads[] = {{4, 8, false, 0}, {7, 8, false, 0}, {INT32_MIN, 8, false, 0}, {5, 0, false, 7},
                  {5, 6, false, 7}, {5, 7, true, 7},  {6, 0, false, cut}};
    for (const auto& c : kReads) {
        SCOPED_TRACE(testing::Message() << c.sample << " into " << c.bufferSize);
        int actualBytes = -1;
        EXPECT_EQ(c.read, stream->ReadSample(c.sample, buffer, c.bufferSize, &actualBytes));
        EXPECT_EQ(c.actualBytes, actualBytes);
    }
    EXPECT_EQ((std::vector<std::string>{"1234567", "unreadable"}), Samples(*stream)) << "from 5 on";
    EXPECT_TRUE(stream->IsKeyFrame(0)) << "counted from 0";
    EXPECT_FALSE(stream->IsKeyFrame(1) || stream->IsKeyFrame(2) || stream->IsKeyFrame(-1));

    EXPECT_EQ(40, stream->GetFormatSize());
    EXPECT_FALSE(stream->GetFormat(buffer, 39));
    ASSERT_TRUE(stream->GetFormat(buffer, 40));
    EXPECT_EQ(Word(16) + Word(-576), std::string(buffer + 4, buffer + 12));

    AVISTREAMINFOW info = {};
    info.dwCaps = 7;
    ASSERT_TRUE(stream->GetStreamInfo(&info));
    EXPECT_EQ(FourCC('M', 'J', 'P', 'G'), info.fccHandler);
    EXPECT_EQ(2997u, info.dwRate);
    EXPECT_EQ(-576, info.rcFrame.bottom);
    EXPECT_EQ(7u, info.dwCaps) << "not in the file";
}

TEST_F(AviOpenDMLParser, EveryPrefixReadsWhatIsWhole) {
    const std::vector<std::string> samples = {"first", "second", "", "last"};
    const std::string file = AviFile(kVideo, samples);
    for (std::size_t size = 0; size < file.size(); ++size) {
        SCOPED_TRACE(size);
        rkAviOpenDMLParser parser(Write(L"a.avi", file.substr(0, size)));
        rkIRawDataStream* stream = parser.GetStream(0, rkStreamContainer::Video);
        EXPECT_EQ(0, stream != nullptr ? stream->GetLength() : 0) << "the index comes last";
    }
    rkAviOpenDMLParser parser(Write(L"a.avi", file));
    EXPECT_EQ(samples, Samples(*parser.GetStream(0, rkStreamContainer::Video)));
}

}  // namespace
