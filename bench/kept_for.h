#pragma once

#include <memory>
#include <optional>
#include <tuple>

/// A `Made` of these arguments: that of the last call as long as they stay the same. The library calls a
/// benchmark several times until it knows how many rounds it wants, and to fill pictures takes longer than they.
template <class Made, class... Arguments>
Made& KeptFor(const Arguments&... arguments) {
    static std::optional<std::tuple<Arguments...>> madeOf;
    static std::unique_ptr<Made> kept;
    if (const std::tuple wanted(arguments...); madeOf != wanted) {
        madeOf.reset();
        kept.reset();  // before the next one takes its memory
        kept = std::make_unique<Made>(arguments...);
        madeOf = wanted;
    }
    return *kept;
}
