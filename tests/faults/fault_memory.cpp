// Memory that there isn't. The C library's functions are called by their second names: to look them up takes
// memory.

#include "tests/faults/fault_plan.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstddef>

namespace {

[[gnu::tls_model("initial-exec")]] thread_local int grants = 0;

/// As long as it lives, this thread gets what it asks for.
struct Grant {
    Grant() { ++grants; }
    ~Grant() { --grants; }
};

bool IsRefused(std::size_t bytes) {
    const FaultCounter* const counter = faultCounter;
    return counter != nullptr && counter->hasBegun && bytes >= counter->plan.leastBytes && grants == 0 &&
           NextFault(FaultPlan::Memory, ENOMEM) == Fault::Fails;
}

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);

void* malloc(std::size_t bytes) noexcept {
    return IsRefused(bytes) ? nullptr : __libc_malloc(bytes);
}

void* calloc(std::size_t count, std::size_t bytes) noexcept {
    return IsRefused(count * bytes) ? nullptr : __libc_calloc(count, bytes);
}

void* realloc(void* block, std::size_t bytes) noexcept {
    return IsRefused(bytes) ? nullptr : __libc_realloc(block, bytes);
}

void* memalign(std::size_t alignment, std::size_t bytes) noexcept {
    return IsRefused(bytes) ? nullptr : __libc_memalign(alignment, bytes);
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept {
    return IsRefused(bytes) ? nullptr : __libc_memalign(alignment, bytes);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) noexcept {
    void* const memory = IsRefused(bytes) ? nullptr : __libc_memalign(alignment, bytes);
    if (memory == nullptr) return ENOMEM;
    *block = memory;
    return 0;
}

// -- Functions that get what they ask for, of libraries that crash or ignore what fails. They take up to five
// pointers or small numbers and answer with one or none, all of which travel in the same registers.

#define GRANTED_FUNCTION(name)                                                               \
    void* name(void* first, void* second, void* third, void* fourth, void* fifth) {          \
        static const auto real = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name)); \
        const Grant grant;                                                                   \
        return real(first, second, third, fourth, fifth);                                    \
    }
GRANTED_FUNCTION(__tls_get_addr)  // a thread's first use of what a library keeps for each
GRANTED_FUNCTION(FT_Init_FreeType)
GRANTED_FUNCTION(FT_Load_Char)
GRANTED_FUNCTION(FcInitLoadConfigAndFonts)
GRANTED_FUNCTION(FcPatternCreate)
GRANTED_FUNCTION(FcPatternAddString)
GRANTED_FUNCTION(FcPatternAddBool)
GRANTED_FUNCTION(FcConfigSubstitute)
GRANTED_FUNCTION(FcDefaultSubstitute)
GRANTED_FUNCTION(FcFontSort)

// Libraries that are loaded set themselves up meanwhile, and end the process if they can't.
void* dlopen(const char* file, int mode) noexcept {
    static const auto real = reinterpret_cast<decltype(&dlopen)>(dlsym(RTLD_NEXT, "dlopen"));
    const Grant grant;
    return real(file, mode);
}

}  // extern "C"
