#pragma once

namespace Metric {

/// Mean over all pixels of `term(first, second)` of two planes of `width` by `height` without gaps, added and
/// divided in `Number`, rounded to float.
///
/// Pixel x of a row goes to sum x % 16 of the row; the sums are added in ascending order, then the rows from
/// the top with what each addition rounds off carried to the next (Kahan, "Further remarks on reducing
/// truncation errors", CACM 8(1), 1965). So the value doesn't depend on the vector width, and the size of the
/// picture costs a float sum no digits: its error stays near that of one row.
template <class Number, class Term>
float PlaneMean(const float* first, const float* second, int width, int height, Term term) {
    constexpr int kLanes = 16;
    Number sum = 0;
    Number excess = 0;  // what `sum` has too much
    for (int y = 0; y < height; ++y, first += width, second += width) {
        Number lanes[kLanes] = {};
        int x = 0;
        for (; x + kLanes <= width; x += kLanes)
            for (int lane = 0; lane < kLanes; ++lane) lanes[lane] += term(first[x + lane], second[x + lane]);
        for (int lane = 0; x < width; ++x, ++lane) lanes[lane] += term(first[x], second[x]);

        Number row = -excess;
        for (Number lane : lanes) row += lane;
        const Number next = sum + row;
        excess = (next - sum) - row;
        sum = next;
    }
    return static_cast<float>(sum / (static_cast<Number>(width) * static_cast<Number>(height)));
}

}  // namespace Metric
