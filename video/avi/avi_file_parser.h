#pragma once

#include <string>

#include "video/avi/stream_container.h"

/// A file that the system's own file interface opens: the way to a script's clip. A script that is wrong
/// fails.
class rkAviFileParser : public rkStreamContainer {
public:
    explicit rkAviFileParser(const std::wstring& fileName);

private:
    bool OpenStreams(const std::wstring& fileName);
};
