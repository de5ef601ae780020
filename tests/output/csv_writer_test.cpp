#include "output/csv_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "platform/text.h"
#include "tests/temporary_directory.h"

namespace {

namespace fs = std::filesystem;

class Csv : public testing::Test {
protected:
    Csv() { settings.outputDir = FromUtf8(directory.native()); }

    /// PSNR stands first in the list of metrics.
    void AddResult(int component, const std::vector<std::wstring>& files, const std::vector<float>& values,
                   const std::wstring& resultName = {}) {
        const int id = store.GetResultCount();
        ResultRecord record;
        record.component = component;
        record.name = resultName;
        for (const std::wstring& file : files) {
            record.files.emplace_back();
            record.files.back().name = file;
        }
        store.SetResultRecord(id, record);
        for (std::size_t i = 0; i < values.size(); ++i) store.AddValue(id, static_cast<int>(i), values[i]);
    }

    /// Saves; the file's name and bytes.
    std::pair<std::string, std::string> Save() {
        CsvWriter writer(settings);
        EXPECT_TRUE(writer.Save(store));
        const std::string path = ToUtf8(writer.GetPath());
        return {fs::relative(path, directory).native(), ReadWhole(path)};
    }

    TemporaryDirectory temporary;
    fs::path directory = temporary.Root();
    CsvSettings settings;
    CResultsStore store;
};

TEST_F(Csv, CellByCell) {
    AddResult(0, {L"/v.1/orig.avi", L"a.avi"}, {40.1123f, 40});
    AddResult(4, {L"/v.1/orig.avi"}, {44.9f}, L"inside");
    store.SetAverage(0, 41.203f);
    const auto [name, bytes] = Save();
    EXPECT_EQ("psnr_yyuv_psnr_rrgb_orig_a.csv", name);
    EXPECT_EQ(
        "PSNR_YYUV,PSNR_inside_RRGB\r\n"
        "/v.1/orig.avi,/v.1/orig.avi\r\n"
        "a.avi,\r\n"
        "AVG: 41.20300,AVG: 0.00000\r\n"
        "40.11230,44.90000\r\n"
        "40.00000,\r\n",
        bytes);
}

TEST_F(Csv, SeparatorsAndDecimalMark) {
    AddResult(0, {L"o", L"p"}, {1.5f, std::numeric_limits<float>::infinity()});
    AddResult(1, {L"o", L"p"}, {-2.25f, 3});
    settings.separator = 2;
    settings.decimalDelimiter = 1;
    EXPECT_EQ(
        "PSNR_YYUV;PSNR_UYUV\r\no;o\r\np;p\r\nAVG: 0,00000;AVG: 0,00000\r\n1,50000;-2,25000\r\n  "
        "inf;3,00000\r\n",
        Save().second);
}

TEST_F(Csv, Encodings) {
    AddResult(0, {L"\u0416\u00E4"}, {});
    EXPECT_EQ("PSNR_YYUV\r\n_\xE4\r\n\r\nAVG: 0.00000\r\n", Save().second);
    settings.unicode = true;
    EXPECT_EQ(ToUtf16Le(L"PSNR_YYUV\r\n\u0416\u00E4\r\n\r\nAVG: 0.00000\r\n"), Save().second);
}

TEST_F(Csv, Names) {
    AddResult(0, {L"/clips/orig.y4m", L"C:\\x.y\\a.b.y4m"}, {});
    AddResult(0, {L"/clips/orig.y4m", L"Orig.y4m"}, {});
    const std::wstring longName(200, L'n');
    const struct {
        const char* what;
        int generation;
        std::wstring moreFile;
        std::string expected;
    } kCases[] = {
        {"prefix", NamePrefix, L"", "psnr_yyuv_orig_a.b_Orig.csv"},
        {"postfix", NamePostfix, L"", "orig_a.b_Orig_psnr_yyuv.csv"},
        {"custom, as it stands", NameCustom, L"", "my result"},
        {"200 characters are short enough", NamePrefix, longName.substr(27 + 1),
         "psnr_yyuv_orig_a.b_Orig_" + std::string(172, 'n') + ".csv"},
        {"201 are too long", NamePrefix, longName.substr(27),
         "custom_metrics_orig_a.b_Orig_" + std::string(173, 'n') + ".csv"},
        {"too long, postfix", NamePostfix, longName.substr(27),
         "orig_a.b_Orig_" + std::string(173, 'n') + "_custom_metrics.csv"},
    };
    settings.customName = L"my result";
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        settings.nameGeneration = c.generation;
        const CResultsStore before = store;
        if (!c.moreFile.empty()) AddResult(0, {c.moreFile}, {});
        EXPECT_EQ(c.expected, Save().first);
        store = before;
    }
}

TEST_F(Csv, DirectoryIsMadeAndAFailureLeavesWhatWasThere) {
    AddResult(0, {L"o"}, {1});
    settings.outputDir += L"/new";
    EXPECT_EQ("new/psnr_yyuv_o.csv", Save().first);

    settings.outputDir = FromUtf8((directory / "new/psnr_yyuv_o.csv").native());
    CsvWriter writer(settings);
    EXPECT_FALSE(writer.Save(store)) << "the directory is a file";
    EXPECT_EQ(L"psnr_yyuv_o.csv/psnr_yyuv_o.csv", writer.GetPath().substr(directory.native().size() + 5));
    EXPECT_GT(fs::file_size(directory / "new/psnr_yyuv_o.csv"), 0u);
}

}  // namespace
