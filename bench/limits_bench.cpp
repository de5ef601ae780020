/// What this machine allows, for the other benchmarks to be held against: bytes copied, floats copied, additions
/// of which each needs the one before, products and sums in vectors, and frames of 4:2:0 read from two files
/// that lie in memory; of each size, with 1 and 2 threads.

#include "bench/kept_for.h"
#include "bench/limits.h"
#include "bench/register.h"
#include "bench/scene.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

template <class Sample>
void Copy(benchmark::State& state, std::int64_t pixels) {
    const std::vector<Sample> source(static_cast<std::size_t>(pixels), Sample{1});
    std::vector<Sample> target(source.size());
    const std::size_t bytes = source.size() * sizeof(Sample);
    Repeat(state, {2.0 * static_cast<double>(bytes)},
           [&] { Limits::CopyOnTeam(source.data(), target.data(), bytes); });
}

// As in values that are defined by the order of their additions.
void AddInAChain(benchmark::State& state, std::int64_t pixels) {
    const std::vector<float> values(static_cast<std::size_t>(pixels), 0.5f);
    const auto count = static_cast<double>(pixels);
    Repeat(state, {4 * count, count}, [&] {
        ShareOut(pixels, [&](std::int64_t first, std::int64_t end) {
            float sum = 0;
            for (std::int64_t i = first; i < end; ++i) sum += values[static_cast<std::size_t>(i)];
            benchmark::DoNotOptimize(sum);
        });
    });
}

// A hundred products and as many sums a pixel.
void CalculateWithVectors(benchmark::State& state, std::int64_t pixels) {
    constexpr std::int64_t kOfEither = 100;
    Repeat(state, {0, 2.0 * kOfEither * static_cast<double>(pixels)},
           [&] { Limits::CalculateOnTeam(kOfEither * pixels); });
}

// A file in memory that has no name.
class MemoryFile {
public:
    explicit MemoryFile(std::int64_t bytes) : descriptor(memfd_create("frames", MFD_CLOEXEC)) {
        const std::vector<std::uint8_t> block(1 << 20, 0x55);
        for (std::int64_t done = 0; done < bytes;) {
            const auto some = static_cast<std::size_t>(std::min<std::int64_t>(bytes - done, 1 << 20));
            const ssize_t written = write(descriptor, block.data(), some);
            if (written <= 0) throw std::runtime_error("no memory for a file");
            done += written;
        }
    }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Reads the bytes from `first` to before `end` of what begins at `offset`. What it throws on a team ends
    /// the program.
    void Read(std::int64_t offset, std::uint8_t* buffer, std::int64_t first, std::int64_t end) const {
        while (first < end) {
            const ssize_t some =
                pread(descriptor, buffer + first, static_cast<std::size_t>(end - first), offset + first);
            if (some <= 0) throw std::runtime_error("the file can't be read");
            first += some;
        }
    }

private:
    int descriptor;
};

// Two raw files, no smaller than caches are, and a buffer of a frame for each.
struct RawFiles {
    explicit RawFiles(std::int64_t pixels)
        : frameBytes(pixels * 3 / 2), frames(std::max<std::int64_t>(8, kLeastBytes / frameBytes)) {}

    static constexpr std::int64_t kLeastBytes = 180'000'000;
    std::int64_t frameBytes;
    std::int64_t frames;
    MemoryFile files[2] = {MemoryFile(frames * frameBytes), MemoryFile(frames* frameBytes)};
    std::vector<std::uint8_t> buffers[2] = {std::vector<std::uint8_t>(static_cast<std::size_t>(frameBytes)),
                                            std::vector<std::uint8_t>(static_cast<std::size_t>(frameBytes))};
};

// Frame after frame, of each frame its first part.
template <int kPart, int kOf>
void ReadFrames(benchmark::State& state, std::int64_t pixels) {
    RawFiles& raw = KeptFor<RawFiles>(pixels);
    const std::int64_t bytes = raw.frameBytes * kPart / kOf;
    std::int64_t frame = 0;
    Repeat(state, {2 * 2 * static_cast<double>(bytes)}, [&] {
        for (int file = 0; file < 2; ++file) {
            ShareOut(bytes, [&](std::int64_t first, std::int64_t end) {
                raw.files[file].Read(frame * raw.frameBytes, raw.buffers[file].data(), first, end);
            });
        }
        frame = (frame + 1) % raw.frames;
    });
}

}  // namespace

int main(int argc, char** argv) {
    const std::pair<const char*, void (*)(benchmark::State&, std::int64_t)> kLimits[] = {
        {"copy bytes", Copy<std::uint8_t>},        {"copy floats", Copy<float>},
        {"chain of additions", AddInAChain},       {"100 products and 100 sums", CalculateWithVectors},
        {"read both raw files", ReadFrames<1, 1>}, {"read only their luma", ReadFrames<2, 3>},
    };
    for (const auto& [width, height] : kSizes) {
        for (const auto& [name, run] : kLimits) {
            const std::int64_t pixels = std::int64_t{width} * height;
            RegisterOnThreads("limits/" + std::string(name) + "/" + SizeName(width, height),
                              [run = run, pixels](benchmark::State& state) { run(state, pixels); });
        }
    }
    return RunRegistered(argc, argv);
}
