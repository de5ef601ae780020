#include "tests/soak/soak.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

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

Figures ReadFigures() {
    Figures figures;
    const auto heap = mallinfo2();
    figures.heapKb = static_cast<double>(heap.uordblks + heap.hblkhd) / 1024;
    figures.residentKb = StatusValue("VmRSS");
    figures.handles = HandleCount();
    figures.threads = StatusValue("Threads");
    return figures;
}

constexpr struct {
    const char* name;
    double Figures::*figure;
    /// By how much the line may rise. Pages come and go with the heap's shape, and a few caches still fill.
    double most;
} kJudged[] = {
    {"resident kB", &Figures::residentKb, 1024},
    {"heap kB", &Figures::heapKb, 32},
    {"handles", &Figures::handles, 0.5},
    {"threads", &Figures::threads, 0.5},
};

constexpr int kMostSamples = 400;

}  // namespace

Soak::Soak(std::string name, double length) : what(std::move(name)), minutes(length) {
    samples.reserve(kMostSamples);  // what is kept here must not show as a rise
}

double Soak::Seconds() const {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

bool Soak::GoesOn() const {
    return Seconds() < minutes * 60;
}

void Soak::EndRound(int roundRuns) {
    runs += roundRuns;
    const double distance = minutes * 60 / (kMostSamples - 1);
    if (!samples.empty() && Seconds() - samples.back().seconds < distance) return;
    Sample sample = {Seconds(), ReadFigures()};
    sample.figures.runs = runs;
    samples.push_back(sample);
}

bool Soak::Conclude(std::FILE* to) const {
    PrintFigures(to);
    constexpr std::size_t kLeast = 10;
    // The first quarter is the warming up.
    const std::span<const Sample> judgedSamples = std::span(samples).subspan(samples.size() / 4);
    if (judgedSamples.size() < kLeast) {
        std::fprintf(to, "  too short: %zu rounds\n", samples.size());
        return false;
    }
    const double length = judgedSamples.back().figures.runs - judgedSamples.front().figures.runs;
    bool isFlat = true;
    for (const auto& judged : kJudged) {
        const double rise = Slope(judgedSamples, judged.figure) * length;
        const bool holds = rise <= judged.most;
        isFlat = isFlat && holds;
        std::fprintf(to, "  %-11s  %+9.2f over %.0f runs: %s\n", judged.name, rise, length,
                     holds ? "flat" : "RISES");
    }
    return isFlat;
}

void Soak::PrintFigures(std::FILE* to) const {
    constexpr std::size_t kLines = 20;
    std::fprintf(to, "%s\n  seconds     runs", what.c_str());
    for (const auto& judged : kJudged) std::fprintf(to, "  %11s", judged.name);
    std::fprintf(to, "\n");
    const std::size_t step = std::max<std::size_t>(1, samples.size() / kLines);
    for (std::size_t i = 0; i < samples.size(); i += step) {
        std::fprintf(to, "  %7.0f  %7.0f", samples[i].seconds, samples[i].figures.runs);
        for (const auto& judged : kJudged) std::fprintf(to, "  %11.0f", samples[i].figures.*judged.figure);
        std::fprintf(to, "\n");
    }
}

/// Of the line through a figure by least squares, a run.
double Soak::Slope(std::span<const Sample> judgedSamples, double Figures::*figure) {
    const auto count = static_cast<double>(judgedSamples.size());
    double meanRuns = 0, meanFigure = 0, products = 0, squares = 0;
    for (const Sample& sample : judgedSamples) {
        meanRuns += sample.figures.runs / count;
        meanFigure += sample.figures.*figure / count;
    }
    for (const Sample& sample : judgedSamples) {
        const double distance = sample.figures.runs - meanRuns;
        products += distance * (sample.figures.*figure - meanFigure);
        squares += distance * distance;
    }
    return products / squares;
}
