// A library that is loaded ahead of a program (LD_PRELOAD) and lets it use one instruction set alone: the one
// named by TOLVANE_VECTORS, "SSSE3" or "AVX2", as Highway names them. It works where the program has Highway
// as a shared library. At the program's end it writes the set that vector code was bound to on standard
// error, so that it can be told from one that was passed over.

#include <hwy/targets.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct ForcedVectors {
    ForcedVectors() {
        const char* wanted = std::getenv("TOLVANE_VECTORS");
        if (wanted == nullptr) return;
        for (const auto target : hwy::SupportedAndGeneratedTargets()) {
            if (std::strcmp(wanted, hwy::TargetName(target)) == 0) hwy::SetSupportedTargetsForTest(target);
        }
    }
    ~ForcedVectors() {
        if (!hwy::GetChosenTarget().IsInitialized()) return;
        // Only one is supported now, if there is one of that name; else the best of all was taken.
        std::fprintf(stderr, "vectors: %s\n", hwy::TargetName(hwy::SupportedAndGeneratedTargets().front()));
    }
} forcedVectors;

}  // namespace
