#pragma once

namespace Kernels {

/// Three rows of one pixel row: R, G, B or Y, U, V.
struct ColorRows {
    const float* first;
    const float* second;
    const float* third;
};

/// (offset, factor) of the first row and the weights of the others.
struct LimitedSum {
    float offset;
    float factor;
    float second;
    float third;
};

/// Weights of the three rows and what is added at the end.
struct PlainSum {
    float first;
    float second;
    float third;
    float offset;
};

// Rows of `count` floats, in float and from left to right. The target may be one of the rows. Any thread.

/// target[i] = factor * (first[i] - offset) + second * second[i] + third * third[i], limited to 0 to
/// `greatest`; what is below 0 or no number becomes +0.
void SumRowsLimited(const ColorRows& rows, const LimitedSum& weights, float greatest, float* target,
                    int count);

/// target[i] = first * first[i] + second * second[i] + third * third[i] + offset.
void SumRows(const ColorRows& rows, const PlainSum& weights, float* target, int count);

/// target[i] = table[n / kStepsPerUnit + n % kStepsPerUnit * kUnits] where values[i] * kStepsPerUnit is the
/// whole number n, from 0 to before kUnits * kStepsPerUnit. True if that holds for all values; otherwise
/// the targets hold anything.
bool LookUpRow(const float* table, const float* values, float* target, int count);

/// The grid of `LookUpRow`: every sample of 8 to 16 bits on the scale of 0 to 256 is one of its points. The
/// table has the bytes' values, which are whole, in its first row.
inline constexpr int kStepsPerUnit = 256;
inline constexpr int kUnits = 256;

}  // namespace Kernels
