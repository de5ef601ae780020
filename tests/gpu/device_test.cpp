#include <gtest/gtest.h>

#include <cstdlib>

#include "gpu/host_runtime.h"
#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "tests/gpu/literal.h"

// A card against the host. Where there is none these tests are passed over; scripts/gpu-check is for
// machines with one and asks for it by TOLVANE_NEEDS_CARD.

namespace Metric {
namespace {

class CardTest : public testing::Test {
protected:
    void SetUp() override {
        if (Gpu::SelectGpuDevice(Gpu::DeviceRuntime(), card) > 0) return;
        if (std::getenv("TOLVANE_NEEDS_CARD") != nullptr) FAIL() << "no card can be used";
        GTEST_SKIP() << "no card";
    }

    /// `greys`: how far a pixel's grey may be off.
    template <class Measured>
    void ExpectHostsValue(const Scene& scene, int greys = 0) {
        const PicturePair pictures(scene);
        Measured onCard(card, PictureSize(scene.width, scene.height));
        Measured onHost({&host, 0}, PictureSize(scene.width, scene.height));
        for (int frame = 0; frame < 3; ++frame) {
            Canvas cards(scene.width, scene.height), hosts(scene.width, scene.height);
            const float expected = onHost.MeasureAndVisualize(pictures.Images(), hosts.picture)[0].value;
            const float value = onCard.MeasureAndVisualize(pictures.Images(), cards.picture)[0].value;
            EXPECT_TRUE(Literal::IsSame(expected, value)) << value << " " << expected;
            EXPECT_EQ(value, onCard.Measure(pictures.Images())[0].value);
            for (int y = 0; y < scene.height; ++y)
                for (int x = 0; x < scene.width; ++x)
                    ASSERT_NEAR(hosts.Pixel(x, y)[0], cards.Pixel(x, y)[0], greys) << x << ", " << y;
        }
    }

    Gpu::GpuDevice card;
    Gpu::HostRuntime host;
};

TEST_F(CardTest, MeasuresAsTheHostDoes) {
    std::vector<Scene> scenes = Literal::GpuScenes();
    scenes.push_back({"1080p", 1920, 1080, Coded});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        ExpectHostsValue<CSSIMCUDAMetric>(scene);
        // In its picture powers and reads between texels may differ in the last digit, a grey then by one.
        ExpectHostsValue<CMSSSIMCUDAMetric>(scene, 1);
        ExpectHostsValue<C3SSIMCUDAMetric>(scene);
    }
}

TEST_F(CardTest, SumsAsTheHostDoes) {
    const Gpu::CheckedGpu gpu(card, "TEST");
    gpu.Use();
    Gpu::MapSum sums(gpu, Gpu::MakeGpuLevel(16, 16));
    for (const int n : {1, 2, 3, 5, 9, 17, 33, 65, 129, 256, 511, 512, 1000, 65536, 1920 * 1080}) {
        SCOPED_TRACE(n);
        std::vector<float> values;
        for (int i = 0; i < n; ++i) values.push_back(std::ldexp(Noise(i, n, 1000), i % 25 - 12));
        const Gpu::DeviceBuffer<float> buffer(gpu, values.size());
        gpu.Check(gpu->Memcpy(buffer.Get(), values.data(), values.size() * sizeof(float)));
        const Gpu::ReduceShape shape = Gpu::ComputeReduceShape(n);
        EXPECT_EQ(Literal::Sum(values),
                  sums.SumOnGpu(n, shape.threads, shape.blocks, buffer.Get(), Gpu::kDefaultStream));
    }
}

}  // namespace
}  // namespace Metric
