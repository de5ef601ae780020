#include "output/visualization_file.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

struct Visualization : testing::Test {
    Visualization() { settings.outputDir = FromUtf8(temporary.Root().native()); }

    /// PSNR stands first in the list of metrics.
    void AddResult(const std::vector<std::wstring>& files) {
        ResultRecord record;
        record.component = 4;
        for (const std::wstring& file : files) record.files.emplace_back().name = file;
        ids.push_back(10 + store.GetResultCount());
        store.SetResultRecord(ids.back(), record);
    }

    std::wstring Name(const TakenPaths& taken = {}) {
        return CVisualizationFile(settings, ids, store, taken).GetPath().substr(settings.outputDir.size());
    }

    TemporaryDirectory temporary;
    VisualizationSettings settings;
    CResultsStore store;
    std::vector<int> ids;
};

}  // namespace

TEST_F(Visualization, Names) {
    settings.customName = L"mine.x";
    AddResult({L"/clips.d/orig.y4m", L"C:\\x.y\\a.b.y4m"});
    EXPECT_EQ(L"/psnr_rrgb_orig_a.b.avi", Name());
    AddResult({L"/clips.d/orig.y4m"});  // repetitions stay
    settings.nameGeneration = NamePostfix;
    EXPECT_EQ(L"/orig_a.b_orig_psnr_rrgb.avi", Name());
    AddResult({L"p.BMP"});
    EXPECT_EQ(L"/orig_a.b_orig_p_psnr_rrgb.bmp", Name());
    settings.nameGeneration = NameCustom;
    EXPECT_EQ(L"/mine.x", Name());

    TakenPaths taken;
    taken.TakeOutput(settings.outputDir + L"/mine.x");
    taken.TakeInput(FromUtf8(temporary.Write("input", "")));
    std::filesystem::create_symlink(temporary.Path("input"), temporary.Path("mine_2.x"));
    EXPECT_EQ(L"/mine_3.x", Name(taken)) << "neither another output nor an input by any path";
}

TEST_F(Visualization, ABitmapHoldsTheLastFrame) {
    AddResult({L"o.bmp", L"p.bmp"});
    settings.width = 64;
    settings.height = 48;
    CVisualizationFile file(settings, ids, store);
    ASSERT_TRUE(file.Open());
    rkVideoImage picture;
    for (const int grey : {50, 90}) {
        picture.Create(64, 48, RGB24, 0);
        for (int y = 0; y < 48; ++y)
            std::fill_n(picture.Row(0, y), 3 * 64, static_cast<std::uint8_t>(grey + y));
        EXPECT_TRUE(file.WriteFrame(picture, 0, {{10, 1}}, store));
    }
    EXPECT_TRUE(file.Close());

    const auto source = rkCreateVideoSource(file.GetPath(), false);
    ASSERT_NE(nullptr, source);
    ASSERT_EQ(0, source->ReadFrameImage(picture, 0));
    EXPECT_EQ(90 + 47, *picture.Row(0, 0)) << "stored from the bottom";
    EXPECT_EQ(90, *picture.Row(0, 47));
}

TEST_F(Visualization, NeedsItsDirectory) {
    AddResult({L"o"});
    settings.width = settings.height = 16;
    settings.outputDir += L"/missing";
    EXPECT_FALSE(CVisualizationFile(settings, ids, store).Open());
    AddResult({L"o.bmp"});
    EXPECT_FALSE(CVisualizationFile(settings, ids, store).Open());
    EXPECT_FALSE(std::filesystem::exists(temporary.Path("missing")));

    settings.outputDir = L"/proc/self";  // where even root makes no file
    EXPECT_FALSE(CVisualizationFile(settings, ids, store).Open());
    settings.outputDir = FromUtf8(temporary.Root().native());
    EXPECT_TRUE(CVisualizationFile(settings, ids, store).Open());
    EXPECT_TRUE(std::filesystem::is_empty(temporary.Root())) << "a bitmap is there with its first frame";
}
