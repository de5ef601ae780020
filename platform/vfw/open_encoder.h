#pragma once

#include "platform/vfw/codec_types.h"
#include "platform/vfw/encoder_table.h"

/// An open encoder that gives each frame out at once; null if it refuses this size. Throws std::bad_alloc.
CodecContextPtr OpenEncoder(const EncoderEntry& entry, int width, int height, const CompressRate& rate);
