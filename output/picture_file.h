#pragma once

#include <string>

class rkVideoImage;

/// Writes an `RGB24` image, bottom-up, as the whole of the bitmap `path`, or leaves what was there, as
/// `ReplaceFile` does. False if that failed.
bool ReplacePicture(const std::wstring& path, rkVideoImage& picture);
