#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "kernels/plane.h"
#include "metric/metric_types.h"
#include "metric/sdk/tolvane/plugin.h"

namespace Metric {

struct DeepFrame;
struct DeepPlane;

/// One frame as float planes, of which one family is filled. Made once for a file and component and refilled
/// for every frame; the planes of the other families hold old values.
///
/// Planes  `GetWidth` times `GetHeight` floats, rows contiguous from the top, 64-byte aligned, zero at first.
/// Scale   0 to 256 at every bit depth; U and V centred on 0; L from 0 to 100.
/// Threads filled by one thread at a time, read by any number.
class CMetricImage : public IMetricImage {
public:
    enum Family : int { FamilyYuv = 0, FamilyRgb = 1, FamilyL = 2 };

    /// Throws std::bad_alloc.
    CMetricImage(int width, int height);
    virtual ~CMetricImage() = default;
    CMetricImage(const CMetricImage&) = delete;
    CMetricImage& operator=(const CMetricImage&) = delete;

    float* GetR() override { return planes[ComponentR].get(); }
    float* GetG() override { return planes[ComponentG].get(); }
    float* GetB() override { return planes[ComponentB].get(); }
    float* GetY() override { return planes[ComponentY].get(); }
    float* GetU() override { return planes[ComponentU].get(); }
    float* GetV() override { return planes[ComponentV].get(); }
    float* GetL() override { return planes[ComponentL].get(); }
    int GetWidth() override { return width; }
    int GetHeight() override { return height; }

    float GetPeak() const { return peak; }  ///< greatest value that a sample can have
    int GetFamily() const { return family; }
    int GetMatrix() const { return matrix; }  ///< colour matrix of the last conversion
    /// The plane of a colour component; null for any other number.
    float* GetPlane(int component);

    // Loaders: `samples` is the block of an `rkVideoImage` of the picture's size, whose 8-bit planes start
    // `planeBytes` apart with rows of `stride` bytes, or whose deep planes are packed.

    /// Planar 8-bit Y, U, V. Family YUV, peak 255; 128 is subtracted from U and V.
    void LoadYuvBytes(const std::uint8_t* samples, int stride, std::size_t planeBytes);
    /// Planar 8-bit R, G, B. Family RGB, peak 255.
    void LoadRgbBytes(const std::uint8_t* samples, int stride, std::size_t planeBytes);
    /// Packed 16-bit little-endian samples of `bits` (10, 14, 16) significant bits, divided by 4, 64 or 256;
    /// chroma replicated and centred. The peak becomes 255.75, 255.984375 or 255.99609375. At odd sizes a
    /// chroma address past the frame's last sample means that sample.
    void LoadYuvDeep420(const std::uint8_t* samples, int bits);
    void LoadYuvDeep422(const std::uint8_t* samples, int bits);
    void LoadYuvDeep444(const std::uint8_t* samples, int bits);
    /// The same for planes G, B, R.
    void LoadRgbDeep(const std::uint8_t* samples, int bits);

    // Converters within the image, by colour matrix 0 (REC.601) or 1 (PC.601).

    /// From family YUV only; R, G, B are limited to 0 to 255. Peak 255.
    void ToRgb(int matrixNumber);
    /// From family RGB only, without a limit. The peak becomes 255 also when nothing had to be done.
    void ToYuv(int matrixNumber);
    /// From either family; peak 100.
    void ToL(int matrixNumber);

private:
    float* Row(int component, int y);
    std::size_t PixelCount() const;
    void LoadDeep(const DeepFrame& frame, Family loadedFamily,
                  std::initializer_list<std::pair<int, DeepPlane>> deepPlanes);

    std::array<Kernels::FloatPlane, kComponentCount> planes;  // by component number
    float peak = 255;
    int width;
    int height;
    int family = FamilyYuv;
    int matrix = 0;
};

}  // namespace Metric
