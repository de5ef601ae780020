#include "tests/soak/soak.h"

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <vector>

namespace {

/// A number of /proc/self/status.
double StatusValue(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double value = 0;
        if (word == key + ":" && status >> value) return value;
    }
    return 0;
}

double HandleCount() {
    const std::filesystem::directory_iterator handles("/proc/self/fd");
    return static_cast<double>(std::distance(begin(handles), end(handles))) - 1;  // one to read this
}

/// What a process holds at a moment.
struct Sample {
    double seconds = 0;
    double runs = 0;        ///< done by then
    double residentKb = 0;  ///< memory in pages
    double heapKb = 0;      ///< memory that was asked for and not given back
    double handles = 0;     ///< open descriptors
    double threads = 0;
};

constexpr struct {
    const char* name;
    double Sample::*figure;
    /// By how much the line may rise. Pages come and go with the heap's shape, and a few caches still fill.
    double most;
} kJudged[] = {
    {"resident kB", &Sample::residentKb, 1024},
    {"heap kB", &Sample::heapKb, 32},
    {"handles", &Sample::handles, 0.5},
    {"threads", &Sample::threads, 0.5},
};

constexpr int kMostSamples = 400;

Sample TakeSample(double seconds, double runs) {
    const auto heap = mallinfo2();
    return {seconds,
            runs,
            StatusValue("VmRSS"),
            static_cast<double>(heap.uordblks + heap.hblkhd) / 1024,
            HandleCount(),
            StatusValue("Threads")};
}

/// Of the line through a figure by least squares, a run.
double Slope(std::span<const Sample> samples, double Sample::*figure) {
    const auto count = static_cast<double>(samples.size());
    double meanRuns = 0, meanFigure = 0, products = 0, squares = 0;
    for (const Sample& sample : samples) {
        meanRuns += sample.runs / count;
        meanFigure += sample.*figure / count;
    }
    for (const Sample& sample : samples) {
        const double distance = sample.runs - meanRuns;
        products += distance * (sample.*figure - meanFigure);
        squares += distance * distance;
    }
    return products / squares;
}

void PrintSamples(const std::vector<Sample>& samples, std::FILE* to) {
    constexpr std::size_t kLines = 20;
    std::fprintf(to, "  seconds     runs");
    for (const auto& judged : kJudged) std::fprintf(to, "  %11s", judged.name);
    const std::size_t step = std::max<std::size_t>(1, samples.size() / kLines);
    for (std::size_t i = 0; i < samples.size(); i += step) {
        std::fprintf(to, "\n  %7.0f  %7.0f", samples[i].seconds, samples[i].runs);
        for (const auto& judged : kJudged) std::fprintf(to, "  %11.0f", samples[i].*judged.figure);
    }
    std::fprintf(to, "\n");
}

/// Prints the judgement; whether all stayed flat.
bool AreFlat(const std::vector<Sample>& samples, std::FILE* to) {
    constexpr std::size_t kLeast = 10;
    // The first quarter is the warming up.
    const std::span<const Sample> judgedSamples = std::span(samples).subspan(samples.size() / 4);
    if (judgedSamples.size() < kLeast) {
        std::fprintf(to, "  too short: %zu rounds\n", samples.size());
        return false;
    }
    const double length = judgedSamples.back().runs - judgedSamples.front().runs;
    bool areFlat = true;
    for (const auto& judged : kJudged) {
        const double rise = Slope(judgedSamples, judged.figure) * length;
        const bool holds = rise <= judged.most;
        areFlat = areFlat && holds;
        std::fprintf(to, "  %-11s  %+9.2f over %.0f runs: %s\n", judged.name, rise, length,
                     holds ? "flat" : "RISES");
    }
    return areFlat;
}

}  // namespace

int Soak(int argc, char** argv, const std::string& what, std::FILE* to,
         const std::function<int()>& round) try {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 0;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 0;
    if (minutes <= 0 && rounds <= 0) {
        std::fprintf(stderr, "usage: %s MINUTES [ROUNDS]\n", argv[0]);
        return 64;
    }
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const auto seconds = [=] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    std::vector<Sample> samples;
    samples.reserve(kMostSamples);  // what is kept here must not show as a rise
    double runs = 0;
    for (int i = 0; rounds > 0 ? i < rounds : seconds() < minutes * 60; ++i) {
        runs += round();
        if (samples.empty() || seconds() - samples.back().seconds >= minutes * 60 / (kMostSamples - 1))
            samples.push_back(TakeSample(seconds(), runs));
    }
    std::fprintf(to, "%s\n", what.c_str());
    PrintSamples(samples, to);
    return AreFlat(samples, to) || rounds > 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
