#pragma once

#include <string>

#include "tests/golden/scene.h"

/// A generated clip. `form` is how it is stored:
///   a raw file      the layout's name as `--layout` takes it
///   a Y4M file      the colour word, "C420jpeg" or "C422p12"
///   a bitmap        "BMP"; one frame
struct Clip {
    std::string form;
    int width = 0;
    int height = 0;
    int frames = 0;
    Scene scene = Scene::Moving;
};

/// The ending of the clip's file name: ".yuv", ".y4m" or ".bmp".
std::string ClipEnding(const Clip& clip);

bool IsRaw(const Clip& clip);

/// The whole file of the clip's version 0 to 3, see `SceneSample`. Throws for a form that there isn't.
std::string ClipFile(const Clip& clip, int version);
