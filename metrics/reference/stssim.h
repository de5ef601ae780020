#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "kernels/reference/space_time_ssim.h"
#include "metrics/gauss_window_ssim.h"
#include "metrics/motion/motion_estimator.h"

/// stSSIM by the samples of every line, whole histories and sorted pools. The motion comes from the
/// estimator, the spatial map from the SSIM metric: what is told here is what is done with them.
namespace Metric::Reference {

struct StssimFrame {
    float value = 0;
    std::vector<float> map;  ///< what is painted; empty while there is nothing
};

class Stssim {
public:
    /// Multiples of 8.
    Stssim(int pictureWidth, int pictureHeight)
        : width(pictureWidth),
          height(pictureHeight),
          alignedWidth((width + 15) / 16 * 16),
          alignedHeight((height + 15) / 16 * 16) {
        motion.Setup(alignedHeight, alignedWidth, MotionParameters{});
    }

    StssimFrame Push(const std::vector<float>& first, const std::vector<float>& second,
                     const SSIMConstants& constants) {
        firstFrames.push_back(first);
        secondFrames.push_back(second);
        if (firstFrames.size() < 33) return {};

        const std::vector<float> temporal = TemporalMap(constants);
        const std::size_t middle = firstFrames.size() - 17;
        std::vector<float> spatial(first.size());
        GaussWindowSSIM(width, height, Kernels::BorderReplicate)
            .Map({firstFrames[middle].data(), secondFrames[middle].data()}, width, height, constants,
                 spatial.data());
        StssimFrame frame;
        for (std::size_t i = 0; i < spatial.size(); ++i)
            frame.map.push_back(255 - temporal[i] * 255 * spatial[i]);
        frame.value = static_cast<float>(Pooled(spatial) * Pooled(temporal));
        return frame;
    }

private:
    static Kernels::Reference::Picture Bytes(const std::vector<float>& frame, int width, int height) {
        Kernels::Reference::Picture picture{width, height, {}};
        for (float sample : frame)
            picture.pixels.push_back(
                static_cast<std::uint8_t>(std::clamp(std::nearbyint(sample), 0.0f, 255.0f)));
        return picture;
    }

    Kernels::Reference::Sequence History(const std::vector<std::vector<float>>& frames) const {
        Kernels::Reference::Sequence history;
        for (std::size_t i = frames.size() - 33; i < frames.size(); ++i)
            history.push_back(Bytes(frames[i], width, height));
        return history;
    }

    std::vector<std::uint8_t> WithMargin(const Kernels::Reference::Picture& picture) const {
        std::vector<std::uint8_t> plane;
        for (int y = -48; y < alignedHeight + 48; ++y)
            for (int x = -48; x < alignedWidth + 48; ++x)
                plane.push_back(static_cast<std::uint8_t>(picture.At(x, y)));
        return plane;
    }

    std::vector<float> TemporalMap(const SSIMConstants& constants) {
        const Kernels::Reference::Sequence first = History(firstFrames);
        const Kernels::Reference::Sequence second = History(secondFrames);
        const std::vector<std::uint8_t> current = WithMargin(first[16]);
        const std::vector<std::uint8_t> reference = WithMargin(first[15]);
        const int stride = alignedWidth + 96;
        motion.Estimate({current.data() + 48 * stride + 48, stride},
                        {reference.data() + 48 * stride + 48, stride});

        const std::vector<double> weights = Kernels::Reference::SpaceTimeWeights();
        std::vector<float> map;
        for (int y = 0; y < alignedHeight; ++y)
            for (int x = 0; x < alignedWidth; ++x)
                map.push_back(static_cast<float>(Kernels::Reference::PixelValue(
                    first, second, weights, x, y, LinesAt(x, y), constants.c1, constants.c2)));
        map.resize(static_cast<std::size_t>(width * height));
        return map;
    }

    Kernels::LineSet LinesAt(int x, int y) const {
        const BlockMotion& block = motion.Field().At(x / 16, y / 16);
        std::size_t entry = 0;
        if (block.partition == 8) {
            const auto quadrant = static_cast<std::size_t>(y % 16 / 8 * 2 + x % 16 / 8);
            entry = 4 * quadrant;
            if (block.quadrantPartition[quadrant] == 4)
                entry += static_cast<std::size_t>(y % 8 / 4 * 2 + x % 8 / 4);
        }
        const int across = std::abs(block.vectors[entry].x);
        const int down = std::abs(block.vectors[entry].y);
        if (across == down) return across == 0 ? Kernels::LineSet::Star : Kernels::LineSet::Cross;
        return across < down ? Kernels::LineSet::Vertical : Kernels::LineSet::Horizontal;
    }

    double Pooled(std::vector<float> values) const {
        const int pooled = width * static_cast<int>(height * 0.06);
        std::sort(values.begin(), values.end());
        double sum = 0;
        for (int i = 0; i < pooled; ++i) sum += values[static_cast<std::size_t>(i)];
        return std::min(sum / pooled, 1.0);
    }

    int width;
    int height;
    int alignedWidth;
    int alignedHeight;
    MotionEstimator motion;
    std::vector<std::vector<float>> firstFrames;
    std::vector<std::vector<float>> secondFrames;
};

}  // namespace Metric::Reference
