#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "kernels/plane.h"
#include "metric/metric_types.h"
#include "metric/sample_plane.h"
#include "metric/sdk/tolvane/plugin.h"

namespace Metric {

/// One frame as float planes, of which one family is filled. Made once for a file and component and refilled
/// for every frame; the planes of the other families hold old values.
///
/// Planes  `GetWidth` times `GetHeight` floats, rows contiguous from the top, 64-byte aligned, zero at first.
///         A plane is made when it is asked for, from the samples of the frame, and what nobody asks for
///         is never made. So a frame has to stay as it is until the image is filled with the next one.
/// Scale   0 to 256 at every bit depth; U and V centred on 0; L from 0 to 100.
/// Threads filled and converted by one thread at a time, read by any number. Making a plane uses the threads
///         that the next parallel level may have.
class CMetricImage : public IMetricImage {
public:
    enum Family : int { FamilyYuv = 0, FamilyRgb = 1, FamilyL = 2 };

    /// Throws std::bad_alloc.
    CMetricImage(int width, int height);
    virtual ~CMetricImage() = default;
    CMetricImage(const CMetricImage&) = delete;
    CMetricImage& operator=(const CMetricImage&) = delete;

    float* GetR() override { return GetPlane(ComponentR); }
    float* GetG() override { return GetPlane(ComponentG); }
    float* GetB() override { return GetPlane(ComponentB); }
    float* GetY() override { return GetPlane(ComponentY); }
    float* GetU() override { return GetPlane(ComponentU); }
    float* GetV() override { return GetPlane(ComponentV); }
    float* GetL() override { return GetPlane(ComponentL); }
    int GetWidth() override { return width; }
    int GetHeight() override { return height; }

    float GetPeak() const { return peak; }  ///< greatest value that a sample can have
    int GetFamily() const { return family; }
    int GetMatrix() const { return matrix; }  ///< colour matrix of the last conversion
    /// The plane of a colour component; null for any other number.
    float* GetPlane(int component);

    /// The frame's own samples of a component, if its plane is made of these alone; else null. They are what
    /// the plane holds as long as nobody writes to that.
    const SamplePlane* GetSamples(int component) const;

    /// Whether a component's plane is to be made as it is read, with `MakePixels`, in place of being kept: only
    /// one reader was expected, and nobody has asked for the plane since the frame came.
    bool IsMadeAsRead(int component) const;
    /// What the plane would hold from (`x`, `y`) on, `x` even. For `IsMadeAsRead` components; any number of
    /// threads at once.
    void MakePixels(int component, int x, int y, float* pixels, int count) const;
    /// Whether one metric alone will read the image, to be told before the first frame. Not expected at first.
    void ExpectOneReader(bool isExpected) { hasOneReader = isExpected; }

    /// Makes what the family's planes still lack and forgets the frame: to be called before planes are
    /// written to.
    void ForgetFrame();

    /// Forgets the frame; planes that aren't made yet keep old values.
    void DropFrame();

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
    /// Samples of 8 bits wherever they lie, of family YUV or RGB. Peak 255.
    void LoadBytes(Family loadedFamily, const SamplePlanes& frame);

    // Converters within the image, by colour matrix 0 (REC.601) or 1 (PC.601).

    /// From family YUV only; R, G, B are limited to 0 to 255. Peak 255.
    void ToRgb(int matrixNumber);
    /// From family RGB only, without a limit. The peak becomes 255 also when nothing had to be done.
    void ToYuv(int matrixNumber);
    /// From either family; peak 100. Throws std::bad_alloc.
    void ToL(int matrixNumber);

private:
    class RowMaker;

    void Load(Family loadedFamily, const SamplePlanes& frame, float greatest);
    void LoadDeep(Family loadedFamily, const SamplePlanes& frame, int bits);
    void ConvertTo(Family wanted, int matrixNumber);
    void MakePlane(int component);
    bool IsMade(int component) const;
    std::size_t PixelCount() const;

    std::array<Kernels::FloatPlane, kComponentCount> planes;  // by component number
    /// Whether a plane holds what the frame has for it; of the planes of `family` and `sourceFamily` alone it
    /// tells anything.
    std::array<std::atomic<bool>, kComponentCount> made = {};
    std::mutex making;

    float peak = 255;
    int width;
    int height;
    int family = FamilyYuv;
    int matrix = 0;

    /// What the planes of `family` are made from: planes of this family which are made, or else the samples.
    int sourceFamily = FamilyYuv;
    SamplePlanes samples = {};
    bool hasFrame = false;
    bool hasOneReader = false;
};

}  // namespace Metric
