#include <gtest/gtest.h>

#include <limits>

#include "output/csv_writer.h"
#include "output/visualization_file.h"
#include "platform/text.h"
#include "tests/output/results.h"
#include "tests/temporary_directory.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

namespace fs = std::filesystem;

struct SavedFiles : testing::Test {
    SavedFiles() { csv.outputDir = pictures.outputDir = FromUtf8(temporary.Root().native()); }

    /// A result of PSNR.
    void Add(std::vector<std::wstring> files, std::vector<float> values = {}, int component = 0,
             const std::wstring& name = {}) {
        ids.push_back(store.GetResultCount());
        AddResult(store, ids.back(), {L"psnr", std::move(files), std::move(values), component, name});
    }

    /// Saves the table; the file's name and bytes.
    std::pair<std::string, std::string> SaveCsv() {
        CsvWriter writer(csv);
        EXPECT_TRUE(writer.Save(store));
        const std::string path = ToUtf8(writer.GetPath());
        return {fs::relative(path, temporary.Root()).native(), ReadWhole(path)};
    }

    std::wstring VisualizationName(const TakenPaths& taken = {}) {
        return CVisualizationFile(pictures, ids, store, taken).GetPath().substr(pictures.outputDir.size());
    }

    TemporaryDirectory temporary;
    CsvSettings csv;
    VisualizationSettings pictures;
    CResultsStore store;
    std::vector<int> ids;
};

}  // namespace

TEST_F(SavedFiles, CsvCellByCell) {
    Add({L"/v.1/orig.avi", L"\u0416\u00E4.avi"}, {40.1123f, 40});
    Add({L"/v.1/orig.avi"}, {44.9f, std::numeric_limits<float>::infinity(), -2.25f}, 4, L"inside");
    store.SetAverage(0, 41.203f);
    const std::string bytes =
        "PSNR_YYUV,PSNR_inside_RRGB\r\n"
        "/v.1/orig.avi,/v.1/orig.avi\r\n"
        "_\xE4.avi,\r\n"
        "AVG: 41.20300,AVG: 0.00000\r\n"
        "40.11230,44.90000\r\n"
        "40.00000,  inf\r\n"
        ",-2.25000\r\n";
    EXPECT_EQ(bytes, SaveCsv().second);
    csv.unicode = true;
    csv.separator = 2;
    csv.decimalDelimiter = 1;
    EXPECT_EQ(
        ToUtf16Le(L"PSNR_YYUV;PSNR_inside_RRGB\r\n/v.1/orig.avi;/v.1/orig.avi\r\n\u0416\u00E4.avi;\r\n"
                  L"AVG: 41,20300;AVG: 0,00000\r\n40,11230;44,90000\r\n40,00000;  inf\r\n;-2,25000\r\n"),
        SaveCsv().second);
}

TEST_F(SavedFiles, CsvNames) {
    Add({L"/clips/orig.y4m", L"C:\\x.y\\a.b.y4m"});
    Add({L"/clips/orig.y4m", L"Orig.y4m"}, {}, 4);
    const std::string more(163, 'n');  // of another file's name
    const std::tuple<const char*, int, std::size_t, std::string> kCases[] = {
        {"prefix", NamePrefix, 0, "psnr_yyuv_psnr_rrgb_orig_a.b_Orig.csv"},
        {"postfix", NamePostfix, 0, "orig_a.b_Orig_psnr_yyuv_psnr_rrgb.csv"},
        {"custom, as it stands", NameCustom, 0, "my result"},
        {"200 characters", NamePrefix, 162, "psnr_yyuv_psnr_rrgb_orig_a.b_Orig_" + more.substr(1) + ".csv"},
        {"201 are too long", NamePrefix, 163, "custom_metrics_orig_a.b_Orig_" + more + ".csv"},
        {"at the end", NamePostfix, 163, "orig_a.b_Orig_" + more + "_custom_metrics.csv"},
    };
    csv.customName = L"my result";
    for (const auto& [what, generation, moreLetters, expected] : kCases) {
        csv.nameGeneration = generation;
        if (moreLetters > 0) AddResult(store, 2, {L"psnr", {std::wstring(moreLetters, L'n')}});
        EXPECT_EQ(expected, SaveCsv().first) << what;
    }
}

TEST_F(SavedFiles, TheDirectoryOfACsvFileIsMadeAndAFailureLeavesWhatWasThere) {
    Add({L"o"}, {1});
    csv.outputDir += L"/new";
    EXPECT_EQ("new/psnr_yyuv_o.csv", SaveCsv().first);
    csv.outputDir += L"/psnr_yyuv_o.csv";  // a file
    CsvWriter writer(csv);
    EXPECT_FALSE(writer.Save(store));
    EXPECT_EQ(csv.outputDir + L"/psnr_yyuv_o.csv", writer.GetPath());
    EXPECT_GT(fs::file_size(ToUtf8(csv.outputDir)), 0u);
}

TEST_F(SavedFiles, VisualizationNames) {
    pictures.customName = L"mine.x";
    Add({L"/clips.d/orig.y4m", L"C:\\x.y\\a.b.y4m"}, {}, 4);
    EXPECT_EQ(L"/psnr_rrgb_orig_a.b.avi", VisualizationName());
    Add({L"/clips.d/orig.y4m", L"p.BMP"}, {}, 4);  // repetitions stay
    pictures.nameGeneration = NamePostfix;
    EXPECT_EQ(L"/orig_a.b_orig_p_psnr_rrgb.bmp", VisualizationName());
    pictures.nameGeneration = NameCustom;
    EXPECT_EQ(L"/mine.x", VisualizationName());

    TakenPaths taken;
    taken.TakeOutput(pictures.outputDir + L"/mine.x");
    taken.TakeInput(FromUtf8(temporary.Write("input", "")));
    fs::create_symlink(temporary.Path("input"), temporary.Path("mine_2.x"));
    EXPECT_EQ(L"/mine_3.x", VisualizationName(taken)) << "neither another output nor an input by any path";
}

TEST_F(SavedFiles, AVisualizedBitmapHoldsTheLastFrame) {
    Add({L"o.bmp", L"p.bmp"});
    pictures.width = 64;
    pictures.height = 48;
    for (const std::wstring& directory : {pictures.outputDir + L"/missing", std::wstring(L"/proc/self")}) {
        VisualizationSettings nowhere = pictures;
        nowhere.outputDir = directory;  // the latter where even root makes no file
        EXPECT_FALSE(CVisualizationFile(nowhere, ids, store).Open());
    }
    CVisualizationFile file(pictures, ids, store);
    ASSERT_TRUE(file.Open());
    EXPECT_TRUE(fs::is_empty(temporary.Root())) << "it is there with its first frame";
    rkVideoImage picture;
    for (const int grey : {50, 90}) {
        picture.Create(64, 48, RGB24, 0);
        for (int y = 0; y < 48; ++y)
            std::fill_n(picture.Row(0, y), 3 * 64, static_cast<std::uint8_t>(grey + y));
        EXPECT_TRUE(file.WriteFrame(picture, 0, {{0, 1}}, store));
    }
    EXPECT_TRUE(file.Close());

    const auto source = rkCreateVideoSource(file.GetPath(), false);
    ASSERT_NE(nullptr, source);
    ASSERT_EQ(0, source->ReadFrameImage(picture, 0));
    EXPECT_EQ(90 + 47, *picture.Row(0, 0)) << "stored from the bottom";
    EXPECT_EQ(90, *picture.Row(0, 47));
}
