# Sets TOLVANE_HAS_CUDA: whether there is a CUDA compiler that builds our device code. Without one everything else
# builds and works.

set(TOLVANE_HAS_CUDA OFF)
if(TOLVANE_CUDA)
    # For the compiler's own test; CMake's default is one card of long ago.
    set(CMAKE_CUDA_ARCHITECTURES 75)
    include(CheckLanguage)
    check_language(CUDA)
    if(CMAKE_CUDA_COMPILER)
        if(CCACHE AND NOT CMAKE_CUDA_COMPILER_LAUNCHER)
            set(CMAKE_CUDA_COMPILER_LAUNCHER ${CCACHE})
        endif()
        enable_language(CUDA)
        if(CMAKE_CUDA_COMPILER_VERSION VERSION_LESS 11.8)
            message(STATUS "No device code: CUDA ${CMAKE_CUDA_COMPILER_VERSION} is older than today's cards")
        else()
            set(TOLVANE_HAS_CUDA ON)
            # Code for the cards themselves, and for the newest in a form that later ones translate.
            if(TOLVANE_CUDA_ARCHITECTURES)
                set(CMAKE_CUDA_ARCHITECTURES ${TOLVANE_CUDA_ARCHITECTURES})
            elseif(CMAKE_CUDA_COMPILER_VERSION VERSION_LESS 12.8)
                set(CMAKE_CUDA_ARCHITECTURES 75-real 80-real 86-real 89-real 90)
            else()
                set(CMAKE_CUDA_ARCHITECTURES 75-real 80-real 86-real 89-real 90-real 100-real 120)
            endif()
        endif()
    endif()
endif()
