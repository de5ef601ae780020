#pragma once

#include "kernels/gauss_ssim.h"
#include "kernels/reference/arithmetic.h"
#include "kernels/reference/gauss.h"
#include "kernels/reference/reductions.h"
#include "kernels/reference/ssim_map.h"

#include <array>
#include <vector>

/// The composition that the fused operations stand for. The map isn't null.
namespace Kernels::Reference {

/// Calls useMoments(moments) with the five filtered planes.
template <class UseMoments>
void WithMoments(const SSIMPlanes& planes, BorderKind border, const UseMoments& useMoments) {
    const int width = planes.width;
    const int height = planes.height;
    const int stride = width * static_cast<int>(sizeof(float));
    std::array<std::vector<float>, 5> filtered;
    std::vector<float> product(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));

    const auto filter = [&](const float* source, int sourceStride, std::vector<float>& target) {
        target.resize(product.size());
        Reference::FilterGaussBorder(source, sourceStride, target.data(), stride, width, height, kGaussWindow,
                                     kGaussSigma, border, 0, nullptr);
    };
    filter(planes.first, planes.firstStride, filtered[0]);
    filter(planes.second, planes.secondStride, filtered[1]);
    Reference::Sqr(planes.first, planes.firstStride, product.data(), stride, width, height);
    filter(product.data(), stride, filtered[2]);
    Reference::Sqr(planes.second, planes.secondStride, product.data(), stride, width, height);
    filter(product.data(), stride, filtered[3]);
    Reference::Mul(planes.first, planes.firstStride, planes.second, planes.secondStride, product.data(),
                   stride, width, height);
    filter(product.data(), stride, filtered[4]);

    useMoments(SSIMMoments{filtered[0].data(), filtered[1].data(), filtered[2].data(), filtered[3].data(),
                           filtered[4].data(), stride});
}

inline double GaussSSIM(const SSIMPlanes& planes, BorderKind border, float c1, float c2, void*) {
    WithMoments(planes, border, [&](const SSIMMoments& moments) {
        Reference::SSIMMap(moments, planes.map, planes.mapStride, planes.width, planes.height, c1, c2);
    });
    return Reference::Mean(planes.map, planes.mapStride, planes.width, planes.height, AccuracyHigh);
}

inline double GaussContrastStructure(const SSIMPlanes& planes, BorderKind border, double c2, void*) {
    WithMoments(planes, border, [&](const SSIMMoments& moments) {
        Reference::ContrastStructureMap(moments, planes.map, planes.mapStride, planes.width, planes.height,
                                        c2);
    });
    return Reference::Mean(planes.map, planes.mapStride, planes.width, planes.height, AccuracyHigh);
}

}  // namespace Kernels::Reference
