#pragma once

#include <cstdio>
#include <functional>
#include <string>

/// The main function of a program with the arguments MINUTES [ROUNDS]: does `round` again and again, for so
/// long or so often, and prints to `to` whether what the process holds stays flat: not the first runs, which
/// fill caches and take what is kept for good, but a line through all figures behind the first quarter.
///
/// `round`   answers how many runs it had; throws if one of them goes wrong.
/// The status is 0 if all stays flat, 1 if something rises or goes wrong, 64 for wrong arguments. With rounds
/// it is 0 also where something rises.
int Soak(int argc, char** argv, const std::string& what, std::FILE* to, const std::function<int()>& round);
