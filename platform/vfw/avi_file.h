#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/vfw/bitmap_format.h"
#include "platform/vfw/stream_info.h"

/// A file of streams as the system's own file interface shows it: a script's clip for reading, or an AVI file
/// that is being written.
///
/// Every function answers 0 for success and another number for a failure; nothing throws. A stream keeps its
/// file alive. Files and streams belong to one thread at a time.
class AviFile;
class AviStream;

struct AVIFILEINFOW {
    std::uint32_t dwStreams;
};

/// Ways of opening a file: reading is 0.
constexpr unsigned OF_WRITE = 0x0001;
constexpr unsigned OF_CREATE = 0x1000;

/// How `AVIStreamFindSample` searches: the last key sample at or before a sample.
constexpr unsigned FIND_PREV = 4;
constexpr unsigned FIND_KEY = 16;

/// A pair around all other calls of a thread; pairs inside a pair do no harm.
void AVIFileInit();
void AVIFileExit();

/// That pair around a block.
struct AviFileSession {
    AviFileSession() { AVIFileInit(); }
    ~AviFileSession() { AVIFileExit(); }
    AviFileSession(const AviFileSession&) = delete;
    AviFileSession& operator=(const AviFileSession&) = delete;
};

/// For reading: runs the script file at `path`, which ends in ".avs"; what is no script fails. A script that
/// is wrong opens without streams and says why through `ScriptClipError`. With OF_WRITE and OF_CREATE: an AVI
/// file at `path`, emptied.
int AVIFileOpenW(std::shared_ptr<AviFile>& file, const std::wstring& path, unsigned mode);
/// Completes a written file once its streams are released too; non-zero if that, or any write before, failed.
/// Release the streams first: the last one to go would complete the file without an answer.
int AVIFileRelease(std::shared_ptr<AviFile>& file);
int AVIFileInfoW(AviFile& file, AVIFILEINFOW& info);
int AVIFileGetStream(const std::shared_ptr<AviFile>& file, std::shared_ptr<AviStream>& stream, int number);

/// Whether the script behind `file` failed: non-zero and `message` (if not null) set. 0 for a sound script
/// and for a file without a script.
int ScriptClipError(AviFile& file, std::string* message);

int AVIStreamRelease(std::shared_ptr<AviStream>& stream);
int AVIStreamInfoW(AviStream& stream, AVISTREAMINFOW& info);
/// The stream's bitmap format. A null `format` asks `size`, otherwise `size` is the room there is.
int AVIStreamReadFormat(AviStream& stream, int position, void* format, int& size);
/// One sample. With a null `buffer` only `bytes`, its size. Fails with `bytes` set if it doesn't fit.
int AVIStreamRead(AviStream& stream, int sample, void* buffer, int bufferSize, int& bytes);
/// The sample that `flags` asks for, -1 if there is none.
int AVIStreamFindSample(AviStream& stream, int sample, unsigned flags);

/// Adds the video stream of a file that is being written; there is one a file. `dwScale`, `dwRate`,
/// `dwStart`, the handler, the rectangle and the name are kept as they are, lengths and sizes follow from the
/// samples. The format follows before the first sample.
///
/// The file is AVI with OpenDML indexes, valid at any size up to about 1.5 TiB. Samples go to the file at
/// once: a full disk fails the write, and what came before stays readable. After a kill the samples up to the
/// last update can be read, all but the last 16 or 1/64 of them, whichever is more.
int AVIFileCreateStreamW(const std::shared_ptr<AviFile>& file, std::shared_ptr<AviStream>& stream,
                         const AVISTREAMINFOW& info);
int AVIStreamSetFormat(AviStream& stream, int position, const void* format, int size);
/// One sample, at the end: `position` is `dwStart` and the samples so far. `flags` may have AVIIF_KEYFRAME.
int AVIStreamWrite(AviStream& stream, int position, const void* data, std::size_t size, std::uint32_t flags);
