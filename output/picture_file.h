#pragma once

#include <string>

class rkVideoImage;

/// Writes an `RGB24` image, bottom-up, as the bitmap `path`, or leaves what was there: under a name of its own beside it,
/// then renamed. False if that failed.
bool ReplacePicture(const std::wstring& path, rkVideoImage& picture);
