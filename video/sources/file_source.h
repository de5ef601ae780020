#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "kernels/plane.h"
#include "video/video_source.h"

/// What all sources of one file have in common: the file's name, the picture's shape, a frame's way into an
/// image, and the texts. A source adds `Open`, `ReadFrame`, `ReadNextFrame` and what it has to close.
///
/// Closed, all sizes are 0. The name stays known after a failed `Open`, for the error text, until `Close`.
class rkFileSource : public rkIVideoSource {
public:
    /// The frame is read straight into the image's block and put in order there. The class's code for a lack
    /// of memory if the image can't have it. An image stays as it is if the file held no whole frame when it
    /// was opened; a frame that couldn't be read leaves anything in it.
    int ReadFrameImage(rkVideoImage& image, int frame) override;
    int ReadNextFrameImage(rkVideoImage& image) override;
    void ReadLumaOnly() override { lumaOnly = true; }

    int Close() override;
    void GetFullDescription(wchar_t* buffer, int size) override;
    void GetDescription(wchar_t* buffer, int size) override;
    void GetErrorText(int code, wchar_t* buffer, int size) override;
    bool IsBadFrameNumber(int frame) override { return frame < 0 || frame >= frameCount; }
    bool IsEndOfVideo() override { return position >= frameCount; }
    int GetWidth() override { return width; }
    int GetHeight() override { return height; }
    int GetColorSpace() override { return colorSpace; }
    int GetFrameCount() override { return frameCount; }

protected:
    /// In every class code 1 is the reader's own trouble, such as no memory.
    static constexpr int kReaderError = 1;

    /// `texts` have static storage and are indexed by code; a code beyond them is "Unrecognized error!".
    /// `noMemory` is the code for an image that can't have its memory.
    explicit rkFileSource(std::span<const wchar_t* const> texts, int noMemory = kReaderError)
        : errorTexts(texts), noMemoryCode(noMemory) {}

    virtual std::wstring Description() const;

    void SetShape(int layout, int pictureWidth, int pictureHeight);

    /// How many of the `frameBytes` bytes of a frame are looked at: those of the first plane if that is luma
    /// and enough.
    std::size_t BytesToRead(std::size_t frameBytes) const;

    /// As many frames as an int can count.
    void SetFrameCount(std::uint64_t frames);

    /// Gives `block` that many zeroed bytes; pages cost nothing until written. False without memory.
    static bool Allocate(Kernels::BytePlane& block, int bytes);

    std::wstring fileName;
    bool holdsFrame = false;  // at least one whole frame
    bool lumaOnly = false;
    int colorSpace = 0;
    int width = 0;
    int height = 0;
    int frameCount = 0;
    int position = 0;  // the frame that the next sequential read returns

private:
    template <class Read, class IsRead>
    int ReadImage(rkVideoImage& image, const Read& read, const IsRead& isRead);

    std::span<const wchar_t* const> errorTexts;
    int noMemoryCode;
};
