#pragma once

#include <string>

/// What a file is by the ending of its name, in any case.
bool rkIsAviName(const std::wstring& name);  ///< "avi"
bool rkIsMovName(const std::wstring& name);  ///< "mov"
bool rkIsAvsName(const std::wstring& name);  ///< "avs"
bool rkIsBmpName(const std::wstring& name);  ///< "bmp"
bool rkIsY4mName(const std::wstring& name);  ///< "y4m"
bool rkIsRawName(const std::wstring& name);  ///< "yuv", "yuv10", "rgb" or the digit 6, as in ".yuv16"
