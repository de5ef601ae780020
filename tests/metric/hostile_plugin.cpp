// A metric plug-in that breaks its promises. The settings string says which: a word and, for most, a number.

#include <tolvane/plugin.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <stdexcept>
#include <string>

namespace {

class HostilePlugin final : public Metric::IMetricPlugin {
public:
    void Init(int, int width, int, int*) override {
        if (width < 0) throw std::runtime_error("width");
    }
    bool Configure(const wchar_t* settings) override {
        const std::wstring text = settings;
        word = text.substr(0, text.find(L' '));
        number = static_cast<int>(std::wcstol(text.c_str() + word.size(), nullptr, 10));
        if (word == L"refuse") throw 5;
        return true;
    }
    void Measure(Metric::IMetricImage**, int, int* ids, float* values, int* resultCount) override {
        *resultCount = Told(L"results", 1);
        std::fill_n(ids, std::min(*resultCount, 1000), -7);
        std::fill_n(values, std::min(*resultCount, 1000), std::numeric_limits<float>::quiet_NaN());
        MayThrow();
    }
    void MeasureAndVisualize(Metric::IMetricImage** images, int count, int* ids, float* values,
                             int* resultCount, unsigned char*, int) override {
        Measure(images, count, ids, values, resultCount);
    }
    void GetResultInfo(int* resultCount, int* ids, int** fileLists, wchar_t** names, bool) override {
        *resultCount = Told(L"results", 1);
        for (int i = 0; i < std::min(*resultCount, 1000); ++i) {
            ids[i] = -7;
            fileLists[i][0] = Told(L"files", 2);
            for (int file = 1; file <= std::min(fileLists[i][0], 1000); ++file) fileLists[i][file] = file;
            Write(names[i]);
        }
        MayThrow();
    }
    void GetAverages(int* ids, float* values, int* resultCount, bool) override {
        Measure(nullptr, 0, ids, values, resultCount);
    }
    int GetInputCount(bool) override { return MayThrow(), 2; }
    void GetComponents(int* components, int* count) override {
        *count = Told(L"components", 1);
        for (int i = 0; i < std::min(*count, 1000); ++i) components[i] = i - 2;
        MayThrow();
    }
    void GetId(wchar_t* buffer) override { Write(buffer); }
    void GetUnit(wchar_t* buffer) override { Write(buffer); }
    int GetBlockWidth() override { return number; }
    int GetBlockHeight() override { return MayThrow(), 1; }
    void GetName(wchar_t* buffer) override { Write(buffer); }
    void GetInfoUrl(wchar_t* buffer) override { Write(buffer); }
    bool IsHigherBetter() override { return MayThrow(), true; }
    bool IsConfigurable() override { return MayThrow(), true; }
    bool GetDefaultSettings(wchar_t* buffer, int size) override {
        MayThrow();
        if (word != L"text") return false;
        std::wmemset(buffer, L'd', static_cast<std::size_t>(size));  // no end
        return true;
    }

private:
    /// The number of the settings if they are about `what`, else what is usual.
    int Told(const wchar_t* what, int usual) const { return word == what ? number : usual; }
    void Write(wchar_t* buffer) const {
        std::fill_n(buffer, Told(L"text", 0), L'x');
        if (word != L"text") buffer[0] = 0;
        MayThrow();
    }
    void MayThrow() const {
        if (word == L"throw") throw std::runtime_error("an exception of the plug-in");
    }

    std::wstring word;
    int number = 0;
};

}  // namespace

// How it is made is told by the environment: an object, none, or an exception.
void CreateMetric(void** metric) {
    const char* way = std::getenv("HOSTILE_PLUGIN");
    const std::string made = way == nullptr ? "" : way;
    if (made == "throw") throw std::runtime_error("CreateMetric");
    *metric = made == "null" ? nullptr : static_cast<Metric::IMetricPlugin*>(new HostilePlugin);
}

void ReleaseMetric(void* metric) {
    delete static_cast<HostilePlugin*>(static_cast<Metric::IMetricPlugin*>(metric));
    throw std::runtime_error("ReleaseMetric");
}
