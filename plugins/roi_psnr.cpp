// PSNR inside and outside a rectangle of the picture, for video that was coded with a region of interest.
// Also the worked example of a metric plug-in: it stands on the SDK header alone.

#include <tolvane/plugin.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cwchar>
#include <sstream>
#include <string>

namespace {

using Metric::IMetricImage;

constexpr double kMaxPsnr = 100;  // of equal pictures
constexpr wchar_t kDefaultSettings[] = L"x=0 y=0 w=64 h=64";

/// A rectangle in pixels; `right` and `bottom` are the first column and row behind it.
struct Region {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool HasRow(int y) const { return y >= top && y < bottom; }
    bool Has(int x, int y) const { return HasRow(y) && x >= left && x < right; }
    bool HasOnEdge(int x, int y) const {
        return Has(x, y) && (x == left || x == right - 1 || y == top || y == bottom - 1);
    }
};

bool ParseNumber(const std::wstring& digits, int& number) {
    if (digits.empty() || digits.size() > 6 || digits.find_first_not_of(L"0123456789") != digits.npos)
        return false;
    number = std::stoi(digits);
    return true;
}

/// Reads words such as "x=16 y=16 w=64 h=64", in any order; what isn't named stays at its default. The
/// rectangle has to begin inside the picture and is cut at the picture's edges. False leaves `region` alone.
bool ParseRegion(const std::wstring& settings, int pictureWidth, int pictureHeight, Region& region) {
    constexpr wchar_t kKeys[] = L"xywh";
    int numbers[] = {0, 0, 64, 64};
    std::wistringstream words(settings);
    for (std::wstring word; words >> word;) {
        const wchar_t* key = std::wcschr(kKeys, word[0]);
        const bool isSetting = key != nullptr && word.size() > 2 && word[1] == L'=';
        if (!isSetting || !ParseNumber(word.substr(2), numbers[key - kKeys])) return false;
    }
    const auto [x, y, width, height] = numbers;
    if (x >= pictureWidth || y >= pictureHeight || width < 1 || height < 1) return false;
    region = {x, y, std::min(x + width, pictureWidth), std::min(y + height, pictureHeight)};
    return true;
}

double Area(int width, int height) {
    return static_cast<double>(width) * height;
}

double SumOfSquares(const float* first, const float* second, int begin, int end) {
    double sum = 0;
    for (int x = begin; x < end; ++x) {
        const double difference = first[x] - second[x];
        sum += difference * difference;
    }
    return sum;
}

/// Inside or outside.
struct Part {
    int resultId = 0;
    double pixels = 0;
    double error = 0;          // sum of squares of the last frame
    double sequenceError = 0;  // and of all frames
};

/// Results   "inside" and "outside", in dB; only "inside" when the region is the whole picture.
/// Peak      255, and 100 for L. That deeper video goes a fraction of a level higher isn't counted.
/// Sequence  the PSNR of the mean error over all frames.
class RoiPsnr final : public Metric::IMetricPlugin {
public:
    void Init(int usedComponent, int pictureWidth, int pictureHeight, int* resultIdCounter) override {
        component = usedComponent;
        width = pictureWidth;
        height = pictureHeight;
        for (Part& part : parts) part.resultId = (*resultIdCounter)++;
        Configure(kDefaultSettings);
    }

    bool Configure(const wchar_t* settings) override {
        if (!ParseRegion(settings, width, height, region)) return false;
        parts[0].pixels = Area(region.right - region.left, region.bottom - region.top);
        parts[1].pixels = Area(width, height) - parts[0].pixels;
        return true;
    }

    void GetResultInfo(int* resultCount, int* ids, int** fileLists, wchar_t** names, bool) override {
        constexpr const wchar_t* kNames[] = {L"inside", L"outside"};
        constexpr int kBothFiles[] = {2, 0, 1};  // how many, then which
        *resultCount = ResultCount();
        for (int i = 0; i < *resultCount; ++i) {
            ids[i] = parts[i].resultId;
            std::copy(std::begin(kBothFiles), std::end(kBothFiles), fileLists[i]);
            std::wcscpy(names[i], kNames[i]);
        }
    }

    void Measure(IMetricImage** images, int, int* ids, float* values, int* resultCount) override {
        AddFrame(PlaneOf(*images[0]), PlaneOf(*images[1]));
        *resultCount = ResultCount();
        for (int i = 0; i < *resultCount; ++i) {
            ids[i] = parts[i].resultId;
            values[i] = Psnr(parts[i].error / parts[i].pixels);
        }
    }

    void MeasureAndVisualize(IMetricImage** images, int imageCount, int* ids, float* values, int* resultCount,
                             unsigned char* target, int targetStride) override {
        Measure(images, imageCount, ids, values, resultCount);
        Paint(PlaneOf(*images[0]), PlaneOf(*images[1]), target, targetStride);
    }

    void GetAverages(int* ids, float* values, int* resultCount, bool) override {
        *resultCount = ResultCount();
        for (int i = 0; i < *resultCount; ++i) {
            ids[i] = parts[i].resultId;
            values[i] = Psnr(parts[i].sequenceError / (parts[i].pixels * frameCount));
        }
    }

    int GetInputCount(bool) override { return 2; }
    void GetComponents(int* components, int* count) override {
        constexpr int kComponents[] = {0, 1, 2, 4, 5, 6, 3};  // Y, U, V, R, G, B, L
        *count = static_cast<int>(std::size(kComponents));
        std::copy(std::begin(kComponents), std::end(kComponents), components);
    }
    void GetId(wchar_t* buffer) override { std::wcscpy(buffer, L"roi_psnr"); }
    void GetUnit(wchar_t* buffer) override { std::wcscpy(buffer, L"dB"); }
    int GetBlockWidth() override { return 1; }
    int GetBlockHeight() override { return 1; }
    void GetName(wchar_t* buffer) override { std::wcscpy(buffer, L"PSNR (region)"); }
    void GetInfoUrl(wchar_t* buffer) override { buffer[0] = 0; }
    bool IsHigherBetter() override { return true; }
    bool IsConfigurable() override { return true; }
    bool GetDefaultSettings(wchar_t* buffer, int size) override {
        if (size < static_cast<int>(std::size(kDefaultSettings))) return false;
        std::wcscpy(buffer, kDefaultSettings);
        return true;
    }

private:
    int ResultCount() const { return parts[1].pixels > 0 ? 2 : 1; }

    const float* PlaneOf(IMetricImage& image) const {
        constexpr std::array kPlanes = {&IMetricImage::GetY, &IMetricImage::GetU, &IMetricImage::GetV,
                                        &IMetricImage::GetL, &IMetricImage::GetR, &IMetricImage::GetG,
                                        &IMetricImage::GetB};
        return (image.*kPlanes[static_cast<std::size_t>(component)])();
    }

    float Psnr(double meanError) const {
        const double peak = component == 3 ? 100 : 255;
        if (meanError == 0) return kMaxPsnr;
        return static_cast<float>(std::min(kMaxPsnr, 10 * std::log10(peak * peak / meanError)));
    }

    void AddFrame(const float* first, const float* second) {
        for (Part& part : parts) part.error = 0;
        for (int y = 0; y < height; ++y, first += width, second += width) {
            // A row beside the region is all left of it.
            const int left = region.HasRow(y) ? region.left : width;
            const int right = region.HasRow(y) ? region.right : width;
            parts[0].error += SumOfSquares(first, second, left, right);
            parts[1].error +=
                SumOfSquares(first, second, 0, left) + SumOfSquares(first, second, right, width);
        }
        for (Part& part : parts) part.sequenceError += part.error;
        ++frameCount;
    }

    /// Eight times the difference: white inside, blue outside, the region's edge green.
    void Paint(const float* first, const float* second, unsigned char* target, int targetStride) const {
        for (int y = 0; y < height; ++y, first += width, second += width, target += targetStride) {
            for (int x = 0; x < width; ++x) {
                const auto level =
                    static_cast<unsigned char>(std::min(255.0f, 8 * std::abs(first[x] - second[x])));
                const unsigned char inside = region.Has(x, y) ? level : 0;
                const bool isEdge = region.HasOnEdge(x, y);
                target[3 * x] = isEdge ? 0 : level;
                target[3 * x + 1] = isEdge ? 255 : inside;
                target[3 * x + 2] = isEdge ? 0 : inside;
            }
        }
    }

    int component = 0;
    int width = 0;
    int height = 0;
    int frameCount = 0;
    Region region;
    Part parts[2];  // inside, outside
};

}  // namespace

TOLVANE_EXPORT_METRIC(RoiPsnr)
