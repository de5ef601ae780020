#include "video/avi/compressor_settings.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/video/avi/riff_builder.h"

namespace {

std::string Record(std::uint64_t size, std::uint64_t stateSize, const std::string& state) {
    return Word(size) + "vidcMJPG" + Word(7500) + Word(0xFFFFFFFE) + Word(stateSize) + state;
}

TEST(CompressorSettings, RecordsAreReadOrRefusedWhole) {
    const struct {
        const char* what;
        std::string record, state;
        bool sound;
    } kCases[] = {
        {"three bytes of state", Record(23, 3, "abc"), "abc", true},
        {"bytes behind it", Record(23, 3, "abc") + "more", "abc", true},
        {"no state", Record(20, 0, ""), "", true},
        {"a state of less than nothing", Record(20, 0xFFFFFFFF, ""), "", true},
        {"record beyond the bytes", Record(24, 3, "abc"), "", false},
        {"record of almost 4 GiB", Record(0xFFFFFFFF, 3, "abc"), "", false},
        {"record too small for its fields", Record(19, 0, ""), "", false},
        {"state beyond the record", Record(20, 3, "abc"), "", false},
        {"state of 2 GiB", Record(23, 0x7FFFFFFF, "abc"), "", false},
        {"cut in a field", Record(20, 0, "").substr(0, 23), "", false},
        {"nothing", "", "", false},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkCompressorSettings settings;
        EXPECT_EQ(c.sound, settings.FromRecord(
                               {reinterpret_cast<const std::uint8_t*>(c.record.data()), c.record.size()}));
        const std::vector<std::uint8_t> stored = settings.ToRecord();
        if (c.sound) {
            EXPECT_EQ(Record(20 + c.state.size(), c.state.size(), c.state),
                      std::string(stored.begin(), stored.end()));
            EXPECT_EQ(FourCC('M', 'J', 'P', 'G'), settings.fccHandler);
            EXPECT_EQ(7500, settings.quality);
            EXPECT_EQ(-2, settings.dataRate);
        } else {
            EXPECT_EQ(rkCompressorSettings(), settings);
        }
    }
}

TEST(CompressorSettings, ChoiceIsOpenedAgainWithItsState) {
    static bool refuses = true;
    SetCompressorChooser([](COMPVARS& choice, const BITMAPINFOHEADER&, const wchar_t* title) {
        EXPECT_STREQ(L"Choose compressor:", title);
        choice = {kFccVideoCodec, FourCC('M', 'J', 'P', 'G'), 4200, 7, 33, nullptr};
        choice.hic = ICOpen(choice.fccType, choice.fccHandler, IcMode::Compress);
        ICSetRate(choice.hic, {.keyFrameRate = choice.lKey});
        return !refuses;
    });
    rkCompressorSettings settings;
    EXPECT_FALSE(settings.Choose({}));
    EXPECT_EQ(rkCompressorSettings(), settings);
    EXPECT_EQ(L"Uncompressed RGB", settings.Description());
    refuses = false;
    EXPECT_TRUE(settings.Choose({}));
    SetCompressorChooser(nullptr);
    EXPECT_EQ(4200, settings.quality);
    EXPECT_EQ(7, settings.dataRate);

    rkCompressorSettings stored;
    ASSERT_TRUE(stored.FromRecord(settings.ToRecord()));
    EXPECT_EQ(settings.state, ICGetState(stored.OpenCompressor()));
    EXPECT_NE(ICGetState(ICOpen(stored.fccType, stored.fccHandler, IcMode::Compress)), stored.state);
    wchar_t text[12];
    stored.Describe(text, 12);
    EXPECT_STREQ(L"Motion JPEG", text);
    stored.state = {1, 2, 3};
    EXPECT_NE(nullptr, stored.OpenCompressor()) << "another version's state leaves the defaults";
}

}  // namespace
