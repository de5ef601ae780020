#include "video/display.h"

#include <algorithm>
#include <cstddef>

namespace {

std::uint8_t ToByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(static_cast<int>(value), 0, 255));
}

struct Rec601 {
    static double Luma(int y) { return (y - 16) * 1.164; }
    static double Red(double y, double v) { return y + v * 1.596; }
    static double Green(double y, double u, double v) { return y - v * 0.813 - u * 0.391; }
    static double Blue(double y, double u) { return y + u * 2.018; }
};

struct Pc601 {
    static double Luma(int y) { return y; }
    static double Red(double y, double v) { return y + v * 1.14; }
    static double Green(double y, double u, double v) { return y - u * 0.395 - v * 0.581; }
    static double Blue(double y, double u) { return y + u * 2.032; }
};

template <typename Matrix>
void ConvertRow(const std::uint8_t* y, const std::uint8_t* u, const std::uint8_t* v, std::uint8_t* bgr,
                int width) {
    for (int x = 0; x < width; ++x, bgr += 3) {
        const double luma = Matrix::Luma(y[x]);
        const double centredU = u[x] - 128;
        const double centredV = v[x] - 128;
        bgr[0] = ToByte(Matrix::Blue(luma, centredU));
        bgr[1] = ToByte(Matrix::Green(luma, centredU, centredV));
        bgr[2] = ToByte(Matrix::Red(luma, centredV));
    }
}

}  // namespace

void rkYuvPlanesToRgb24(const std::uint8_t* planes, std::uint8_t* destination, int width, int height,
                        int planeRowStep, int destinationRowStep, int matrix) {
    const auto convertRow = matrix == 0 ? ConvertRow<Rec601> : ConvertRow<Pc601>;
    const std::ptrdiff_t planeBytes = std::ptrdiff_t{height} * planeRowStep;
    for (int row = 0; row < height; ++row) {
        const std::uint8_t* y = planes + std::ptrdiff_t{row} * planeRowStep;
        std::uint8_t* bgr = destination + std::ptrdiff_t{row} * destinationRowStep;
        convertRow(y, y + planeBytes, y + 2 * planeBytes, bgr, width);
    }
}
