#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/vfw/bitmap_format.h"
#include "platform/vfw/stream_info.h"

class AviStream;

/// What may be asked of a file and of its streams. Each kind of file answers what it can; the rest fails.
class AviFile {
public:
    virtual ~AviFile() = default;
    virtual std::uint32_t StreamCount() const = 0;
    /// Null for a number without a stream. `self` owns this file, and the stream will too.
    virtual std::shared_ptr<AviStream> GetStream(const std::shared_ptr<AviFile>& /*self*/, int /*number*/) {
        return nullptr;
    }
    virtual std::shared_ptr<AviStream> CreateStream(const std::shared_ptr<AviFile>& /*self*/,
                                                    const AVISTREAMINFOW& /*info*/) {
        return nullptr;
    }
    /// Why there is no clip behind the script; empty if there is one, or no script.
    virtual const std::string& ScriptError() const {
        static const std::string none;
        return none;
    }
    /// Ends what is being written; false if not all of it got through.
    virtual bool Complete() { return true; }
};

class AviStream {
public:
    virtual ~AviStream() = default;
    virtual const AVISTREAMINFOW& Info() const = 0;
    virtual BITMAPINFOHEADER Format() const { return {}; }
    virtual std::size_t SampleBytes(int /*sample*/) const { return 0; }  ///< 0: no such sample
    virtual bool ReadSample(int /*sample*/, std::uint8_t* /*buffer*/) { return false; }
    virtual bool SetFormat(FormatView /*format*/) { return false; }
    virtual bool WriteSample(int /*position*/, std::span<const std::uint8_t> /*sample*/, bool /*isKey*/) {
        return false;
    }
};
