#include "tests/golden/scene.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr int kGreatest = 65535;

/// 0 to 65535, evenly.
int Hash(int x, int y, int seed) {
    std::uint32_t bits = static_cast<std::uint32_t>(x) * 0x9E3779B1u +
                         static_cast<std::uint32_t>(y) * 0x85EBCA77u +
                         static_cast<std::uint32_t>(seed) * 0xC2B2AE3Du;
    bits = (bits ^ (bits >> 15)) * 0x2C1B3C6Du;
    bits = (bits ^ (bits >> 12)) * 0x297A2D39u;
    return static_cast<int>((bits ^ (bits >> 15)) >> 16);
}

/// A triangle wave from 0 to 65535; `at` is 0 or more.
int Wave(int at, int period) {
    return std::abs(at % (2 * period) - period) * kGreatest / period;
}

int Texture(int plane, int x, int y) {
    const int waves =
        Wave(5 * x + 3 * y, 61 + 40 * plane) * 2 / 5 + Wave(x * y / 8 + 7 * y, 37 + 9 * plane) / 3;
    return waves + Hash(x, y, plane) / 11;
}

/// A block with hard edges that crosses the picture to the left before a pan to the right.
int Panned(int plane, int x, int y, int frame, int speed) {
    const int left = 60 - speed * frame, top = 10 + frame % 3;
    if (x >= left && x < left + 24 && y >= top && y < top + 18) {
        return (x - left) / 5 % 2 == (y - top) / 4 % 2 ? kGreatest - Texture(plane, x - left, y - top) / 6
                                                       : 1500;
    }
    return Texture(plane, x + speed * frame, y + speed * frame / 2);
}

/// What a coarse codec leaves: every other column, in coarse steps, with a mosaic of blocks above it.
int Coded(int version, int plane, int x, int y, int frame, int speed) {
    const int coarse = Hash(x / 8, y / 8, 1000 * version + plane + frame / 4);
    const int step = 1 + coarse / (version == 1 ? 9 : 20);
    const int sample = Panned(plane, x & ~1, y, frame, speed) / step * step + step / 2;
    return std::clamp(sample + coarse % 3000 - 1500, 0, kGreatest);
}

int InPan(int version, int plane, int x, int y, int frame, int speed) {
    return version == 0 ? Panned(plane, x, y, frame, speed) : Coded(version, plane, x, y, frame, speed);
}

int Mask(int plane, int x, int y) {
    if (plane > 0) return 32768;
    if (x >= 24 && x < 70 && y >= 9 && y < 60) return 0;
    return (x / 16 + y / 16) % 2 == 0 ? 60000 : 20000;
}

}  // namespace

int SceneSample(Scene scene, int version, int plane, int x, int y, int frame) {
    if (version == 3) return Mask(plane, x, y);
    const int noise = Hash(x, y, 7000 + 100 * version + 10 * frame + plane);
    switch (scene) {
        case Scene::Fast:
            return InPan(version, plane, x, y, frame, 5);
        case Scene::Noise:
            return noise;
        case Scene::BlackAndWhite:
            return noise < 32768 ? 0 : kGreatest;
        case Scene::Flat:
            return 20000 + 3000 * version;
        case Scene::Equal:
            return InPan(0, plane, x, y, frame, 1);
        case Scene::Inverted:
            return std::abs((version == 0 ? 0 : kGreatest) - InPan(0, plane, x, y, frame, 1));
        default:
            return InPan(version, plane, x, y, frame, 1);
    }
}
