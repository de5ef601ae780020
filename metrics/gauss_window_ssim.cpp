#include "metrics/gauss_window_ssim.h"

#include <cstdint>

namespace Metric {

namespace {

Kernels::SSIMPlanes PlanesOf(const GaussWindowSSIM::Pictures& pictures, int width, int height, float* map) {
    const int stride = width * static_cast<int>(sizeof(float));
    return {pictures.first, stride, pictures.second, stride, map, stride, width, height};
}

}  // namespace

SSIMConstants ConstantsOf(const std::vector<CMetricImage*>& images) {
    const double firstPeak = images[0]->GetPeak();
    const double secondPeak = images[1]->GetPeak();
    return {firstPeak * 0.0001 * secondPeak, firstPeak * 0.0009 * secondPeak};
}

GaussWindowSSIM::GaussWindowSSIM(int greatestWidth, int greatestHeight, Kernels::BorderKind borderKind)
    : border(borderKind),
      scratch(static_cast<std::uint8_t*>(
          Kernels::AllocZeroed(Kernels::GetGaussSSIMScratchSize(greatestWidth, greatestHeight)))) {}

double GaussWindowSSIM::Map(const Pictures& pictures, int width, int height, const SSIMConstants& constants,
                            float* map) {
    return Kernels::GaussSSIM(PlanesOf(pictures, width, height, map), border,
                              static_cast<float>(constants.c1), static_cast<float>(constants.c2),
                              scratch.get());
}

double GaussWindowSSIM::ContrastStructureMap(const Pictures& pictures, int width, int height,
                                             const SSIMConstants& constants, float* map) {
    return Kernels::GaussContrastStructure(PlanesOf(pictures, width, height, map), border, constants.c2,
                                           scratch.get());
}

}  // namespace Metric
