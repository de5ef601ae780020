#include "tests/golden/cases.h"

std::vector<Case> GoldenCases() {
    std::vector<Case> cases;
    const auto add = [&](const std::string& name, const Clip& clip, const std::string& metrics) -> Case& {
        Case& added = cases.emplace_back();
        added.name = name;
        added.clip = clip;
        added.metrics = metrics;
        return added;
    };
    const Clip samples;
    add("yard", samples, "all").split = Split::ByMetric;
    add("yard PC.601", samples, "planes").options = "--matrix pc601";
    add("yard masked", samples, "each").maskForm = "Y";
    Case& black = add("yard masked black", samples, "each");
    black.maskForm = "IYUV";
    black.options = "--black-mask";
    add("yard region", samples, "-m roi_psnr:Y='x=3 y=5 w=20 h=11'");
    add("yard corner", samples, "-m roi_psnr:L='x=150 y=100 w=999 h=999'");

    // stSSIM looks at 33 frames.
    add("moving", {"IYUV", 96, 80, 36, Scene::Moving}, "each");
    add("fast 16 bits", {"P416", 112, 48, 34, Scene::Fast}, "each");
    add("noise", {"YUV", 64, 48, 2, Scene::Noise}, "each");
    add("noise 10 bits", {"P210", 64, 48, 2, Scene::Noise}, "each");
    add("black and white", {"YUV", 64, 48, 2, Scene::BlackAndWhite}, "each");
    add("flat", {"IYUV", 64, 48, 2, Scene::Flat}, "each");
    add("equal", {"IYUV", 64, 48, 2, Scene::Equal}, "each");
    add("inverted", {"IYUV", 64, 48, 2, Scene::Inverted}, "each");
    add("two processed files", {"IYUV", 64, 48, 3, Scene::Moving}, "each").processedFiles = 2;

    constexpr int kSizes[][3] = {{1, 1, 2},     {2, 2, 2},     {3, 5, 2},    {8, 8, 2},
                                 {11, 11, 2},   {37, 29, 2},   {130, 9, 2},  {9, 130, 2},
                                 {1100, 20, 1}, {20, 1100, 1}, {720, 576, 1}};
    for (const auto& [width, height, frames] : kSizes)
        add(std::to_string(width) + "x" + std::to_string(height),
            {"IYUV", width, height, frames, Scene::Moving}, "each");

    const auto addForm = [&](const std::string& name, const char* form, int width, int height) {
        const Clip clip{form, width, height, std::string("BMP") == form ? 1 : 2, Scene::Moving};
        add(name, clip, "planes").split = Split::ByComponent;
        add(name + " PC.601", clip, "planes").options = "--matrix pc601";
    };
    for (const char* form :
         {"IYUV", "YV12", "YV16", "YUV",  "Y",    "UYVY", "YUY2",     "Y410",     "P010",     "P014", "P016",
          "P210", "P214", "P216", "P410", "P414", "P416", "P410_RGB", "P414_RGB", "P416_RGB", "BMP"})
        addForm(form, form, 42, 26);
    for (const char* form : {"C420jpeg", "C422", "C444", "C420p10", "C422p12", "C444p16"})
        addForm(std::string("Y4M ") + form, form, 45, 31);
    addForm("BMP odd", "BMP", 45, 31);

    // An original of another form than the processed file's.
    constexpr const char* kMixed[][3] = {{"IYUV", "P016", ""},
                                         {"P416_RGB", "IYUV", ""},
                                         {"UYVY", "YUV", ""},
                                         {"P410_RGB", "P414_RGB", "P410_RGB"}};
    for (const auto& [original, processed, mask] : kMixed) {
        Case& added =
            add(std::string(original) + " and " + processed, {original, 72, 40, 2, Scene::Moving}, "planes");
        added.processedForm = processed;
        added.maskForm = mask;
        added.split = Split::ByComponent;
    }
    return cases;
}
