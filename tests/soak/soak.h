#pragma once

#include <chrono>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

/// What a process holds at a moment.
struct Figures {
    double runs = 0;        ///< done by then
    double residentKb = 0;  ///< memory in pages
    double heapKb = 0;      ///< memory that was asked for and not given back
    double handles = 0;     ///< open descriptors
    double threads = 0;
};

/// Runs one thing again and again, and tells whether what the process holds stays flat: not the first runs,
/// which fill caches and take what is kept for good, but a line through all figures behind the first quarter.
class Soak {
public:
    /// Starts the time.
    Soak(std::string what, double minutes);

    /// False once the time is over.
    bool GoesOn() const;
    /// Once a round, always at the same stage of it. `runs` is how many it had.
    void EndRound(int runs);

    /// Prints the figures over time and the judgement; whether all stayed flat.
    bool Conclude(std::FILE* to) const;

private:
    using Clock = std::chrono::steady_clock;

    struct Sample {
        double seconds;
        Figures figures;
    };

    double Seconds() const;
    void PrintFigures(std::FILE* to) const;
    static double Slope(std::span<const Sample> judgedSamples, double Figures::*figure);

    std::string what;
    double minutes;
    Clock::time_point start = Clock::now();
    double runs = 0;
    std::vector<Sample> samples;
};
