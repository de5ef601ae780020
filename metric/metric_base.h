#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "kernels/plane.h"
#include "metric/metric_image.h"
#include "metric/metric_interface.h"

namespace Metric {

/// Common base of the metrics that live in the program: identity, the running sum of frame values, the
/// visualization maps and the padded copies of the planes.
class CMetric : public IMetric {
public:
    // The defaults for what a metric doesn't override.
    std::vector<MetricResultInfo> GetResultInfo(bool visualize) override;  ///< one result on files 0 and 1
    std::vector<MetricValue> GetAverages(bool visualize) override;         ///< sum / count, rounded to float
    int GetInputCount(bool visualize) override { return inputCount[visualize ? 1 : 0]; }
    std::wstring GetId() override { return id; }
    std::wstring GetInfoUrl() override { return infoUrl; }
    bool IsHigherBetter() override { return higherIsBetter; }
    std::wstring GetName() override { return name; }
    std::wstring GetUnit() override { return unit; }
    int GetBlockWidth() override { return blockWidth; }
    int GetBlockHeight() override { return blockHeight; }
    bool IsConfigurable() override { return false; }
    bool NeedsGpu() override { return false; }
    bool ReadsItsComponentOnly() override { return true; }
    std::wstring GetDefaultSettings() override { return {}; }
    bool Configure(const std::wstring&) override { return false; }

    /// Adds the first entry, the value of a finished frame, to the running sum. The vector isn't empty.
    virtual void AddFrameValues(std::vector<float> values);
    /// Paints `target`, an `RGB24` image of the picture's size, from the map of `component`.
    virtual void Visualize(rkVideoImage& target, int component) = 0;
    virtual std::vector<int> GetResultIds() { return {resultId}; }

    /// The process-wide counter of result ids: an id is its value before it is raised by one. Used on the
    /// thread that sets up a run only.
    static int* ResultIdCounter();

protected:
    /// Block size 1 by 1.
    explicit CMetric(MetricParameters parameters);
    /// `padSecond`: whether the second image is padded too. A block size of 1 by 1 pads nothing.
    CMetric(MetricParameters parameters, int blockWidth, int blockHeight, bool padSecond);

    /// The planes of the first and second image, rows of `paddedWidth` floats: the images' own planes, or
    /// where padding is needed copies with the last column and then the last row repeated. Second is null for
    /// a single image, and where it needs padding but `padSecond` is false.
    std::pair<const float*, const float*> GetPlanes(const std::vector<CMetricImage*>& images, int component);

    /// The map of `component`: `paddedWidth` by `paddedHeight` floats, zero at first. That of the metric's
    /// own component is there from the start, another one is made on first use.
    float* GetMap(int component);

    /// Pixels of a padded plane or a map.
    std::size_t PaddedPixelCount() const {
        return static_cast<std::size_t>(paddedWidth) * static_cast<std::size_t>(paddedHeight);
    }

    /// The one value that the base returns for a frame.
    std::vector<MetricValue> Result(float frameValue) const { return {{resultId, frameValue}}; }

    std::wstring id;
    std::wstring name;
    int resultId;
    float value = 0;  ///< of the last frame
    double sum = 0;   ///< of the frame values
    int count = 0;    ///< frames added
    std::wstring infoUrl;
    std::array<int, 2> inputCount = {2, 2};  ///< without and with visualization
    float average = 0;                       ///< last answer of GetAverages, in the metrics that override it
    MetricParameters parameters;
    bool higherIsBetter = true;
    std::wstring unit;
    int blockWidth;
    int blockHeight;
    int paddedWidth;  ///< picture size rounded up to the block size
    int paddedHeight;
    bool needsPadding;  ///< the padded size differs from the picture's
    bool padSecond;

private:
    std::array<Kernels::FloatPlane, kComponentCount> maps;
    std::array<Kernels::FloatPlane, kComponentCount> paddedFirst;
    std::array<Kernels::FloatPlane, kComponentCount> paddedSecond;
};

/// The address of a metric's page on the tool's web site.
std::wstring InfoUrl(const wchar_t* path);

}  // namespace Metric
