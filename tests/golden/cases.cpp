#include "tests/golden/cases.h"

namespace {

using Cases = std::vector<Case>;

Case& Add(Cases& cases, const std::string& name, const Clip& clip, const std::string& metrics) {
    Case& added = cases.emplace_back();
    added.name = name;
    added.clip = clip;
    added.metrics = metrics;
    return added;
}

void AddSamples(Cases& cases) {
    const Clip samples;
    Add(cases, "yard", samples, "all").split = Split::ByMetric;
    Add(cases, "yard PC.601", samples, "planes").options = "--matrix pc601";
    Add(cases, "yard masked", samples, "each").maskForm = "Y";
    Case& black = Add(cases, "yard masked black", samples, "each");
    black.maskForm = "IYUV";
    black.options = "--black-mask";
    Add(cases, "yard region", samples, "-m roi_psnr:Y='x=3 y=5 w=20 h=11'");
    Add(cases, "yard corner", samples, "-m roi_psnr:L='x=150 y=100 w=999 h=999'");
}

void AddScenes(Cases& cases) {
    // stSSIM looks at 33 frames.
    Add(cases, "moving", {"IYUV", 96, 80, 36, Scene::Moving}, "each");
    Add(cases, "fast 16 bits", {"P416", 112, 48, 34, Scene::Fast}, "each");
    Add(cases, "noise", {"YUV", 64, 48, 2, Scene::Noise}, "each");
    Add(cases, "noise 10 bits", {"P210", 64, 48, 2, Scene::Noise}, "each");
    Add(cases, "black and white", {"YUV", 64, 48, 2, Scene::BlackAndWhite}, "each");
    Add(cases, "flat", {"IYUV", 64, 48, 2, Scene::Flat}, "each");
    Add(cases, "equal", {"IYUV", 64, 48, 2, Scene::Equal}, "each");
    Add(cases, "inverted", {"IYUV", 64, 48, 2, Scene::Inverted}, "each");
    Add(cases, "two processed files", {"IYUV", 64, 48, 3, Scene::Moving}, "each").processedFiles = 2;
}

void AddSizes(Cases& cases) {
    const struct {
        int width, height, frames;
    } kSizes[] = {{1, 1, 2},   {2, 2, 2},   {3, 5, 2},     {8, 8, 2},     {11, 11, 2},  {37, 29, 2},
                  {130, 9, 2}, {9, 130, 2}, {1100, 20, 1}, {20, 1100, 1}, {720, 576, 1}};
    for (const auto& size : kSizes)
        Add(cases, std::to_string(size.width) + "x" + std::to_string(size.height),
            {"IYUV", size.width, size.height, size.frames, Scene::Moving}, "each");
}

void AddForms(Cases& cases) {
    const auto add = [&](const std::string& name, const char* form, int width, int height) {
        const Clip clip{form, width, height, std::string("BMP") == form ? 1 : 2, Scene::Moving};
        Add(cases, name, clip, "planes").split = Split::ByComponent;
        Add(cases, name + " PC.601", clip, "planes").options = "--matrix pc601";
    };
    for (const char* form :
         {"IYUV", "YV12", "YV16", "YUV",  "Y",    "UYVY", "YUY2",     "Y410",     "P010",     "P014", "P016",
          "P210", "P214", "P216", "P410", "P414", "P416", "P410_RGB", "P414_RGB", "P416_RGB", "BMP"})
        add(form, form, 42, 26);
    for (const char* form : {"C420jpeg", "C422", "C444", "C420p10", "C422p12", "C444p16"})
        add(std::string("Y4M ") + form, form, 45, 31);
    add("BMP odd", "BMP", 45, 31);
}

/// An original of another form than the processed file's.
void AddMixed(Cases& cases) {
    const struct {
        const char *original, *processed, *mask;
    } kMixed[] = {{"IYUV", "P016", ""},
                  {"P416_RGB", "IYUV", ""},
                  {"UYVY", "YUV", ""},
                  {"P410_RGB", "P414_RGB", "P410_RGB"}};
    for (const auto& mixed : kMixed) {
        Case& added = Add(cases, std::string(mixed.original) + " and " + mixed.processed,
                          {mixed.original, 72, 40, 2, Scene::Moving}, "planes");
        added.processedForm = mixed.processed;
        added.maskForm = mixed.mask;
        added.split = Split::ByComponent;
    }
}

}  // namespace

std::vector<Case> GoldenCases() {
    Cases cases;
    AddSamples(cases);
    AddScenes(cases);
    AddSizes(cases);
    AddForms(cases);
    AddMixed(cases);
    return cases;
}
