#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

/// Numbers as they lie in little-endian files, at any address and on any machine.

template <std::unsigned_integral Number>
constexpr Number LoadLe(const std::uint8_t* bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) number |= std::uint64_t{bytes[i]} << (8 * i);
    return static_cast<Number>(number);
}

template <std::unsigned_integral Number>
constexpr void StoreLe(Number number, std::uint8_t* bytes) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes[i] = static_cast<std::uint8_t>(std::uint64_t{number} >> (8 * i));
}
