#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/media/libav.h"

/// How a test's container file is made, by the library's own encoders and writers.
struct ContainerFile {
    const char* container = "matroska";
    const char* encoder = "ffv1";
    const char* options = "";  ///< of the encoder, "name=value:name=value"
    int pictures = 30;
    int width = 64;
    int height = 48;
    const char* times = "";  ///< of the pictures in frames, a digit each; empty: one after another
    int firstPacket = 0;     ///< packets in front of this one aren't written
    int zeroedPacket = -1;   ///< this one is written as zeros
    int halvedPacket = -1;   ///< and of this one the first half
};

/// A file's packets, all of them and sound, as its encoder made them. Not every encoder makes the same of the same
/// pictures twice: what lay in its memory may sway its choices. So files that are compared share these.
struct EncodedPictures {
    CodecParametersPtr codec;
    std::vector<PacketPtr> packets;
};

/// Encodes pictures 0, 1, 2 ... of `SamplePicture`, 25 a second, for the container; false if the libraries can't.
bool Encode(const ContainerFile& file, EncodedPictures& encoded);
/// Writes of them what the file shall hold; false if the libraries can't.
bool WriteContainerFile(const ContainerFile& file, const EncodedPictures& encoded, const std::string& path);
/// Both in one.
bool WriteContainerFile(const ContainerFile& file, const std::string& path);

/// Picture `number` of every such file, 4:2:0: smooth enough to survive a lossy codec, and unlike its neighbours.
FramePtr SamplePicture(int number, int width, int height);

/// The sum of the absolute differences of two 4:2:0 pictures of one size.
long Difference(const AVFrame& first, const AVFrame& second);

/// A 4:2:0 picture as planes Y, V, U without gaps.
std::vector<std::uint8_t> ToYv12(const AVFrame& picture);

/// The number of the sample picture of `count` that a decoded one is closest to.
int NearestSample(const AVFrame& decoded, int count);
