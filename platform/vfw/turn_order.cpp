#include "platform/vfw/turn_order.h"

#include <algorithm>

void TurnOrder::Feed(int sample) {
    open.push_back({sample, fed++, Kind::Picture});
}

void TurnOrder::SetFailure(int picturesReady) {
    if (open.back().kind != Kind::Failure) ++failures;
    open.back().kind = Kind::Failure;
    open.back().place = taken + picturesReady;
}

bool TurnOrder::IsOpen(int sample) const {
    return std::any_of(open.begin(), open.end(), [=](const Sample& s) { return s.number == sample; });
}

std::vector<int> TurnOrder::PicturesBefore(int sample) const {
    std::vector<int> before;
    for (const Sample& s : open) {
        if (s.number == sample) break;
        if (s.kind == Kind::Picture) before.push_back(s.number);
    }
    return before;
}

std::optional<TurnOrder::Turn> TurnOrder::Next(std::optional<int> picture, bool isKey, bool finished) {
    const auto next = NextOpen(picture, isKey, finished);
    if (next == open.end()) return std::nullopt;
    Turn turn = {next->kind, next->number};
    if (turn.kind == Kind::Failure) --failures;
    if (turn.kind == Kind::Picture && turn.sample != picture) turn.kind = Kind::Failure;  // it never came
    open.erase(next);
    ++taken;
    return turn;
}

std::deque<TurnOrder::Sample>::iterator TurnOrder::NextOpen(std::optional<int> picture, bool isKey,
                                                            bool finished) {
    for (auto sample = open.begin(); sample != open.end(); ++sample) {
        if (sample->kind == Kind::Picture) continue;
        if (sample->place <= taken) return sample;
        // The places of repeats ascend: behind one that has to wait, thousands may be waiting too.
        if (failures == 0) break;
    }
    if (!picture) return finished ? open.begin() : open.end();
    if (isKey) return open.begin();  // the key frame itself, if nothing before it is missing
    return std::find_if(open.begin(), open.end(), [=](const Sample& s) { return s.number == *picture; });
}
