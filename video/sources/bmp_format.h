#pragma once

#include <cstddef>

/// Windows bitmaps of 24 bits a pixel: two headers, then the rows of B, G, R bytes, the bottom row first,
/// each filled up to a multiple of 4 bytes. All numbers are little-endian; a negative height means the top
/// row first.

constexpr std::size_t kBmpFileHeaderBytes = 14;
constexpr std::size_t kBmpInfoHeaderBytes = 40;
constexpr std::size_t kBmpHeaderBytes = kBmpFileHeaderBytes + kBmpInfoHeaderBytes;

constexpr unsigned kBmpSignature = 0x4D42;  // "BM"
constexpr unsigned kBmpPlanes = 1;
constexpr unsigned kBmpBitsPerPixel = 24;
constexpr unsigned kBmpUncompressed = 0;

/// Positions from the start of the file.
constexpr std::size_t kBmpSignatureAt = 0;
constexpr std::size_t kBmpFileSizeAt = 2;
constexpr std::size_t kBmpPixelsOffsetAt = 10;
constexpr std::size_t kBmpInfoSizeAt = 14;
constexpr std::size_t kBmpWidthAt = 18;
constexpr std::size_t kBmpHeightAt = 22;
constexpr std::size_t kBmpPlanesAt = 26;
constexpr std::size_t kBmpBitsPerPixelAt = 28;
constexpr std::size_t kBmpCompressionAt = 30;
constexpr std::size_t kBmpImageSizeAt = 34;
