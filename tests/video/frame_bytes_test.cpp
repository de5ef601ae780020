#include "video/frame_bytes.h"

#include "platform/file.h"
#include "platform/text.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <string>
#include <vector>

// A file is read to its end and no further, however it is shared out among threads.
TEST(ReadFrameBytes, FindsWhatThereIs) {
    constexpr std::size_t kFileBytes = 3'000'001;
    std::string content(kFileBytes, '\0');
    for (std::size_t i = 0; i < kFileBytes; ++i) content[i] = static_cast<char>(i * 2654435761u >> 24);
    TemporaryDirectory directory;
    ReadOnlyFile file;
    ASSERT_TRUE(file.Open(FromUtf8(directory.Write("frames", content))));

    constexpr struct {
        const char* what;
        std::size_t offset, bytes, found;
    } kCases[] = {
        {"nothing", 5, 0, 0},
        {"a small frame", 1, 1000, 1000},
        {"a large one", 77, 2'500'003, 2'500'003},
        {"to the last byte", kFileBytes - 1'000'000, 1'000'000, 1'000'000},
        {"cut in the last part", kFileBytes - 1'000'000, 1'000'001, 1'000'000},
        {"cut in the first part", kFileBytes - 10, 1'000'000, 10},
        {"cut in the middle", 2'000'000, 2'000'000, kFileBytes - 2'000'000},
        {"behind the end", kFileBytes + 5, 1'000'000, 0},
    };
    const int threadsBefore = omp_get_max_threads();
    for (const int threads : {1, 2, 8}) {
        omp_set_num_threads(threads);
        for (const auto& c : kCases) {
            SCOPED_TRACE(std::to_string(threads) + " threads, " + c.what);
            std::vector<std::uint8_t> buffer(c.bytes + 1, 0xAA);
            ASSERT_EQ(c.found, ReadFrameBytes(file, c.offset, buffer.data(), c.bytes));
            const std::string_view read(reinterpret_cast<const char*>(buffer.data()), c.found);
            EXPECT_TRUE(c.found == 0 || read == std::string_view(content).substr(c.offset, c.found));
            EXPECT_EQ(0xAA, buffer[c.bytes]);
        }
    }
    omp_set_num_threads(threadsBefore);
}
