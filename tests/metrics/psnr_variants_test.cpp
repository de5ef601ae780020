#include "metrics/psnr_variants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "metrics/psnr.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

template <class PsnrMetric>
std::unique_ptr<CMetric> Make(MetricParameters parameters) {
    return std::make_unique<PsnrMetric>(std::move(parameters));
}

// On paper. Three equal frames and one of error 4: 10 log10(peak^2 / 4) for the frame, by errors 10
// log10(peak^2) for the sequence, else the mean of 100, 100, 100 and the frame's value. L at a difference of
// 2 has the same error.
TEST(PsnrVariants, PeaksAndAverages) {
    const struct {
        std::unique_ptr<CMetric> (*make)(MetricParameters);
        const char* name;
        float frame, sequence, lightness;
    } kCases[] = {
        {Make<CPSNRMetric>, "PSNR", 42.110204f, 48.130804f, 33.979400f},
        {Make<CPsnr256Metric>, "PSNR (256)", 42.144199f, 48.164799f, 33.979400f},
        {Make<CApsnrMetric>, "APSNR", 42.110204f, 85.527551f, 33.979400f},
        {Make<CApsnr256Metric>, "APSNR (256)", 42.144199f, 85.536050f, 33.979400f},
    };
    const auto first = FlatPicture(24, 3, 0);
    const auto second = FlatPicture(24, 3, 2);
    CMetricImage darkL(24, 3);
    CMetricImage brightL(24, 3);
    darkL.ToL(1);
    brightL.ToL(1);
    std::fill_n(brightL.GetL(), 24 * 3, 2.0f);
    for (const auto& c : kCases) {
        const auto metric = c.make(PictureSize(24, 3));
        SCOPED_TRACE(c.name);
        Canvas canvas(24, 3);
        for (int frame = 0; frame < 3; ++frame)
            EXPECT_EQ(100, metric->Measure({first.get(), first.get()})[0].value);
        EXPECT_EQ(100, metric->GetAverages(false)[0].value);
        EXPECT_FLOAT_EQ(c.frame,
                        metric->MeasureAndVisualize({first.get(), second.get()}, canvas.picture)[0].value);
        EXPECT_FLOAT_EQ(c.sequence, metric->GetAverages(false)[0].value);

        const auto onL = c.make(PictureSize(24, 3, ComponentL));
        EXPECT_FLOAT_EQ(c.lightness, onL->Measure({&darkL, &brightL})[0].value);
    }
}

}  // namespace
}  // namespace Metric
