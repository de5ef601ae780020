#pragma once

#include "platform/vfw/codec_types.h"

/// What a handle stands for: an encoder or a decoder.
class Codec {
public:
    virtual ~Codec() = default;
    virtual ICINFO GetInfo() const = 0;
};
