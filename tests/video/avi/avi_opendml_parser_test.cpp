#include "video/avi/avi_opendml_parser.h"

#include <optional>

#include "tests/video/avi/riff_builder.h"
#include "tests/video/sources/source_files.h"

namespace {

struct AviOpenDMLParser : SourceFiles {
    /// Opens such a file; its video stream, if there is one.
    rkIRawDataStream* Open(const std::string& file) {
        parser.emplace(Write(L"a.avi", file));
        return parser->GetStream(0, rkStreamContainer::Video);
    }
    std::optional<rkAviOpenDMLParser> parser;
};

std::string Headers(const std::string& behindFormat = "") {
    return List("hdrl", MainHeader(2, 1) + StreamList({}, behindFormat));
}

/// The samples, those that aren't keys with "-" behind them; the size of their bytes is asked first.
std::vector<std::string> Samples(rkIRawDataStream& stream) {
    std::vector<std::string> samples;
    for (int i = 0; i < stream.GetLength(); ++i) {
        int bytes = -1;
        stream.ReadSample(stream.GetStart() + i, nullptr, 0, &bytes);
        std::string sample(static_cast<std::size_t>(bytes), '#');
        auto* buffer = reinterpret_cast<std::uint8_t*>(sample.data());
        if (!stream.ReadSample(stream.GetStart() + i, buffer, bytes, &bytes)) sample = "unreadable";
        samples.push_back(sample + (stream.IsKeyFrame(i) ? "" : "-"));
    }
    return samples;
}

/// Samples at 0, 12 and 24 bytes from the first one, which stands 12 bytes behind the headers.
const std::string kMovi = List("movi", Chunk("00dc", "one") + Chunk("00dc", "twin") + Chunk("00dc", ""));
const std::vector<std::string> kMoviSamples = {"one", "twin-", ""};

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
        return Word(base + 8) + Word(3) + more + Word(base + 20) + Word(4 | kNoKey) + more + Number(0, 8) +
               more;
    };
    const auto direct = [&](std::uint64_t base, bool fields) {
        const auto headers = [&](std::uint64_t start) {
            const std::string index = entries(start - base, fields);
            return Headers(Chunk("indx", Index(fields ? 3 : 2, 1, 3, base, index)));
        };
        return headers(kBefore + headers(0).size()) + kMovi;
    };
    const std::string kept = Headers(Chunk("indx", std::string(99, '\0'))) + kMovi;
    const std::string index = idx1(4, "", 24).substr(Headers().size() + kMovi.size());
    const std::pair<const char*, std::string> kCases[] = {
        {"idx1 from the movi list", idx1(4, "", 24)},
        {"idx1 from the file", idx1(first, "", first + 24)},
        {"idx1 from the file, no offset for the empty one", idx1(first, "", 0)},
        {"idx1 behind an indx that is only kept free", kept + index},
        {"idx1 that lists lists", idx1(4, Idx1Entry("rec ", 4, 99), 24)},
        {"indx of chunks", direct(0, false)},
        {"indx of chunks in two fields", direct(0, true)},
        {"indx of chunks, offsets from elsewhere", direct(100, false)},
        {"indx, then an idx1 that is skipped", direct(0, false) + Chunk("idx1", Idx1Entry("99xx", 4, 5))},
    };
    for (const auto& [what, data] : kCases) {
        SCOPED_TRACE(what);
        rkIRawDataStream* stream = Open(Riff(data));
        ASSERT_NE(nullptr, stream);
        EXPECT_FALSE(parser->Failed());
        EXPECT_EQ(kMoviSamples, Samples(*stream));
        EXPECT_EQ(nullptr, parser->GetStream(1, rkStreamContainer::Video));
        EXPECT_EQ(nullptr, parser->GetStream(0, rkStreamContainer::Audio));
    }
}

/// Segments beyond 4 GiB in a file with a hole, with entries of two and of three words.
TEST_F(AviOpenDMLParser, SuperIndexOverSeveralSegments) {
    constexpr std::int64_t kFar = (std::int64_t{5} << 30) + 1;
    const std::string index = Index(4, 0, 2, 0, SuperIndexEntry(2000) + SuperIndexEntry(kFar));
    const std::string headers = Headers(Chunk("indx", index + std::string(64, '\0')));
    const std::wstring name = Write(L"a.avi", Riff(headers + List("movi", std::string(4000, '.'))));
    std::fstream file(ToUtf8(name), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(1000) << Chunk("00dc", "one") << Chunk("00dc", "twin");
    file.seekp(2000) << Chunk("ix00", Index(2, 1, 2, 1000, Word(8) + Word(3) + Word(20) + Word(4)));
    const std::string oneNoKey = Word(8) + Word(3 | kNoKey) + Word(0);
    file.seekp(kFar) << Chunk("ix00", Index(3, 1, 1, kFar + 500, oneNoKey));
    file.seekp(kFar + 500) << Chunk("00dc", "far");
    file.close();

    const rkAviOpenDMLParser far(name);
    rkIRawDataStream* stream = far.GetStream(0, rkStreamContainer::Video);
    ASSERT_NE(nullptr, stream);
    EXPECT_EQ((std::vector<std::string>{"one", "twin", "far-"}), Samples(*stream));
}

TEST_F(AviOpenDMLParser, FilesThatContradictThemselvesFail) {
    const std::string strh = StreamHeader({}), strf = StreamFormat({}), strl = StreamList({});
    const auto hdrl = [](const std::string& data) { return List("hdrl", MainHeader(2, 2) + data); };
    const auto headers = [&](const std::string& data) { return Riff(hdrl(List("strl", data))); };
    const auto indexed = [](const std::string& index) { return Riff(Headers(Chunk("indx", index)) + kMovi); };
    const auto files = [](const std::string& idx1) { return Riff(Headers() + kMovi + idx1); };
    const auto superIndex = [&](int entries, std::uint64_t offset) {
        std::string list;
        for (int i = 0; i < entries; ++i) list += SuperIndexEntry(offset);
        return Index(4, 0, static_cast<unsigned>(entries), 0, list);
    };
    const std::string oneEntry = Word(8) + Word(3);
    const std::string chunkIndex = Chunk("ix00", Index(2, 1, 1, 0, oneEntry));
    const std::string largeIndex = Chunk("ix00", Index(2, 1, 1000, 0, std::string(8000, '\0')));
    std::string nested;
    for (int i = 0; i < 40; ++i) nested = List("hdrl", nested);
    const auto behind = [](const std::string& index, const std::string& chunk) {
        return Riff(Headers(Chunk("indx", index)) + chunk);
    };
    const std::uint64_t ix = 12 + Headers(Chunk("indx", superIndex(1, 0))).size();  // behind such headers

    const std::pair<const char*, std::string> kUnsound[] = {
        {"another form", Riff(Headers(), "WAVE")},
        {"no room for a form", ChunkOfSize("RIFF", 3, "AVI ")},
        {"RIFF in RIFF", Riff(Riff(Headers()))},
        {"list without a type", Riff(ChunkOfSize("LIST", 3, "strl"))},
        {"nothing but hdrl in hdrl", Riff(nested)},
        {"two headers of one stream", headers(strh + strh)},
        {"a header without a format", headers(strh)},
        {"and another stream behind", Riff(hdrl(List("strl", strh) + strl))},
        {"a format without a header", headers(strf)},
        {"two formats", headers(strh + strf + strf)},
        {"a format of 2 GiB", headers(strh + ChunkOfSize("strf", 1u << 31, ""))},
        {"sample numbers beyond int", headers(StreamHeader({.start = 1u << 31}) + strf)},
        {"more chunks than any file has", Riff(Headers() + std::string(8 * (1 << 20), '\0') + kMovi)},
        {"more streams than the main header says", Riff(hdrl(strl + strl + strl))},
        {"a stream before the main header", Riff(List("hdrl", strl + MainHeader(2, 2)))},
        {"idx1 before movi", Riff(Headers() + Chunk("idx1", Idx1Entry("00dc", 4, 3)))},
        {"idx1 beyond the streams", files(Chunk("idx1", Idx1Entry("01dc", 4, 3)))},
        {"idx1 without a number", files(Chunk("idx1", Idx1Entry("ix00", 4, 3)))},
        {"idx1 cut", files(ChunkOfSize("idx1", 32, Idx1Entry("00dc", 4, 3)))},
        {"index before the format", headers(strh + Chunk("indx", superIndex(0, 0)) + strf)},
        {"index without a stream", headers(Chunk("indx", superIndex(0, 0)))},
        {"index of less than its head", indexed(Index(2, 1, 0, 0, "").substr(0, 23))},
        {"entries beyond the index", indexed(Index(2, 1, 2, 0, oneEntry))},
        {"four billion entries", indexed(Index(2, 1, 0xffffffff, 0, oneEntry))},
        {"entries of one word", indexed(Index(1, 1, 1, 0, oneEntry))},
        {"indexes beyond the index", indexed(Index(4, 0, 2, 0, SuperIndexEntry(ix)))},
        {"the same large index again and again", behind(superIndex(100, ix + 99 * 16), largeIndex)},
        {"index of an index of indexes", behind(superIndex(1, ix), Chunk("ix00", superIndex(1, ix)))},
        {"index beyond the file", behind(superIndex(1, ix + 99), chunkIndex)},
        {"index beyond any file", behind(superIndex(1, ~std::uint64_t{0}), chunkIndex)},
    };
    const std::pair<const char*, std::string> kSound[] = {
        {"sound with numbers beyond int", Riff(hdrl(strl + StreamList({.type = "auds", .start = ~0u})))},
        {"two streams", Riff(hdrl(strl + strl))},
        {"idx1 of the last stream", files(Chunk("idx1", Idx1Entry("00dc", 4, 3)))},
        {"index without entries", indexed(superIndex(0, 0))},
        {"index of something else", indexed(Index(2, 0x80, 9, 0, ""))},
        {"index of one index", behind(superIndex(1, ix), chunkIndex)},
    };
    for (const auto& [what, bytes] : kUnsound) {
        Open(bytes);
        EXPECT_TRUE(parser->Failed()) << what;
    }
    for (const auto& [what, bytes] : kSound) EXPECT_TRUE(Open(bytes) && !parser->Failed()) << what;
    for (const wchar_t* none : {L"", L"/none.avi"})
        EXPECT_TRUE(rkAviOpenDMLParser(directory + none).Failed());
}

TEST_F(AviOpenDMLParser, WhatTheWalkPassesOver) {
    const std::string sound = Headers() + kMovi + Chunk("idx1", Idx1Entry("00dc", 4, 3));
    const auto withExtended = [&](int frames) {
        const std::string dmlh = Chunk("dmlh", Word(frames) + std::string(244, '\0'));
        return Riff(List("hdrl", MainHeader(2, 1) + StreamList({}) + List("odml", dmlh)) +
                    sound.substr(Headers().size()));
    };
    const std::pair<const char*, std::string> kCases[] = {
        {"an odd chunk", Riff(Chunk("JUNK", "odd") + sound)},
        {"headers elsewhere", Riff(Chunk("strh", "") + Chunk("avih", "") + sound + Chunk("strf", ""))},
        {"another RIFF of another form", Riff(sound) + Riff("", "WAVE")},
        {"a segment", Riff(sound) + Riff(Chunk("idx1", "") + List("hdrl", StreamHeader({})), "AVIX")},
        {"a list to look into", Riff(ChunkOfSize("LIST", 4, "rec ") + sound)},
        {"a size beyond the file", Riff(sound).replace(4, 4, Word(0x7fffffff))},
        {"zeros to the end", Riff(sound + std::string(1 << 20, '\0'))},
        {"more frames in all segments", withExtended(3)},
        {"fewer frames in all segments", withExtended(1)},
    };
    for (const auto& [what, file] : kCases) {
        SCOPED_TRACE(what);
        rkIRawDataStream* stream = Open(file);
        ASSERT_NE(nullptr, stream);
        EXPECT_EQ(file == withExtended(3) ? 3u : 2u, parser->GetTotalFrames());
        EXPECT_EQ(std::vector<std::string>{"one"}, Samples(*stream));
    }
    EXPECT_EQ(0, Open(Riff(Headers() + kMovi))->GetLength()) << "no index";
    EXPECT_EQ(nullptr, Open(""));
    EXPECT_FALSE(parser->Failed());
}

TEST_F(AviOpenDMLParser, Stream) {
    const std::string movi =
        List("movi", Chunk("01dc", "1234567") + Chunk("00wb", "sound") + Chunk("01dc", "cut"));
    const std::string index =
        Idx1Entry("01dc", 4, 7) + Idx1Entry("00wb", 20, 5) + Idx1Entry("01dc", 34, 0xffffffff, false);
    rkIRawDataStream* stream =
        Open(Riff(List("hdrl", MainHeader(2, 2) + StreamList({.type = "auds"}) + StreamList({.start = 5})) +
                  movi + Chunk("idx1", index)));
    rkIRawDataStream* audio = parser->GetStream(0, rkStreamContainer::Audio);
    ASSERT_TRUE(audio != nullptr && stream != nullptr);
    EXPECT_EQ(std::vector<std::string>{"sound"}, Samples(*audio));

    std::uint8_t buffer[40] = {};
    const int cut = 4 + 8 + 48;  // from the last sample to the file's end: its own four, and the index
    const std::tuple<int, int, bool, int> kReads[] = {
        {4, 8, false, 0}, {7, 8, false, 0}, {INT32_MIN, 8, false, 0}, {5, 0, false, 7},
        {5, 6, false, 7}, {5, 7, true, 7},  {6, 0, false, cut}};
    for (const auto& [sample, bufferSize, read, expected] : kReads) {
        SCOPED_TRACE(testing::Message() << sample << " into " << bufferSize);
        int actualBytes = -1;
        EXPECT_EQ(read, stream->ReadSample(sample, buffer, bufferSize, &actualBytes));
        EXPECT_EQ(expected, actualBytes);
    }
    EXPECT_EQ((std::vector<std::string>{"1234567", "unreadable-"}), Samples(*stream)) << "from 5 on";
    EXPECT_FALSE(stream->IsKeyFrame(2) || stream->IsKeyFrame(-1)) << "counted from 0";
    EXPECT_EQ(6, stream->GetEnd());

    EXPECT_FALSE(stream->GetFormat(buffer, 39));
}

TEST_F(AviOpenDMLParser, EveryPrefixReadsWhatIsWhole) {
    const std::vector<std::string> samples = {"first", "second", "", "last"};
    const std::string file = AviBytes({}, samples);
    for (std::size_t size = 0; size < file.size(); ++size) {
        rkIRawDataStream* stream = Open(file.substr(0, size));
        EXPECT_EQ(0, stream != nullptr ? stream->GetLength() : 0) << size << ": the index comes last";
    }
    EXPECT_EQ(samples, Samples(*Open(file)));
}

}  // namespace
