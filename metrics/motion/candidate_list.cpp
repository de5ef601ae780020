#include "metrics/motion/candidate_list.h"

#include <algorithm>
#include <cstdlib>

namespace Metric {

MotionVector CandidateList::Mean() const {
    MotionVector mean;
    if (vectors.empty()) return mean;
    for (const MotionVector& vector : vectors) {
        mean.x += vector.x;
        mean.y += vector.y;
    }
    const int count = static_cast<int>(vectors.size());
    mean.x /= count;
    mean.y /= count;
    return mean;
}

int CandidateList::Spread(const MotionVector& center) const {
    int spread = 0;
    for (const MotionVector& vector : vectors)
        spread = std::max({spread, std::abs(vector.x - center.x), std::abs(vector.y - center.y)});
    return spread;
}

void CandidateList::DropNearer(int distance) {
    auto kept = vectors.begin();
    for (const MotionVector& vector : vectors) {
        const bool apart = std::all_of(vectors.begin(), kept, [&](const MotionVector& earlier) {
            return std::abs(vector.x - earlier.x) + std::abs(vector.y - earlier.y) >= distance;
        });
        if (apart) *kept++ = vector;
    }
    vectors.erase(kept, vectors.end());
}

}  // namespace Metric
