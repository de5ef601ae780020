# One static library per folder of the house. The rules that hold for all our own code stand here once.

add_library(tolvane_rules INTERFACE)
target_include_directories(tolvane_rules INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(tolvane_rules INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Werror
    # g++ 12 sees an overlap in "text" + std::string that isn't there (GCC bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    # Values never depend on the machine: no contraction to fused multiply-add.
    -ffp-contract=off)
target_link_libraries(tolvane_rules INTERFACE OpenMP::OpenMP_CXX Boost::headers)
# The runtime of the teams that is linked in (CMakeLists.txt) is ours alone: a plug-in would get some of its functions from
# it and the others from the shared one, which knows nothing of the first one's teams.
target_link_options(tolvane_rules INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wl,--exclude-libs,libgomp.a>)

# The folders declared so far, lowest first, and for each the folders whose headers it may include. The test of the
# `#include` lines reads the file written at the end of configuring.
set_property(GLOBAL PROPERTY TOLVANE_LAYERS "")

# tolvane_folder(PATH [USES folder...] [LIBRARIES target...] SOURCES file...)
#
# Declares the library of one folder, named tolvane_ and the path with `_` for `/`. A folder that is used must have
# been declared before, so an arrow that points upward stops the configuring.
function(tolvane_folder path)
    cmake_parse_arguments(FOLDER "" "" "USES;LIBRARIES;SOURCES" ${ARGN})
    string(REPLACE "/" "_" name ${path})
    add_library(tolvane_${name} STATIC ${FOLDER_SOURCES})
    target_link_libraries(tolvane_${name} PUBLIC ${FOLDER_LIBRARIES} PRIVATE tolvane_rules)
    target_include_directories(tolvane_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(tolvane_${name} PUBLIC Boost::headers)
    foreach(used ${FOLDER_USES})
        string(REPLACE "/" "_" usedName ${used})
        if(NOT TARGET tolvane_${usedName})
            message(FATAL_ERROR "${path} may not use ${used}: it doesn't stand below it")
        endif()
        target_link_libraries(tolvane_${name} PUBLIC tolvane_${usedName})
    endforeach()
    tolvane_record_layer(${path} "${FOLDER_USES}")
endfunction()

function(tolvane_record_layer path uses)
    string(REPLACE ";" " " words "${uses}")
    set_property(GLOBAL APPEND_STRING PROPERTY TOLVANE_LAYERS "${path}: ${words}\n")
endfunction()

function(tolvane_write_layers file)
    get_property(layers GLOBAL PROPERTY TOLVANE_LAYERS)
    file(WRITE ${file} "${layers}")
endfunction()

# tolvane_program(PATH NAME [USES folder...] [LIBRARIES target...] SOURCES file...)
#
# Declares an executable of the top floor, with the same rules.
function(tolvane_program path name)
    cmake_parse_arguments(PROGRAM "" "" "USES;LIBRARIES;SOURCES" ${ARGN})
    add_executable(${name} ${PROGRAM_SOURCES})
    target_link_libraries(${name} PRIVATE tolvane_rules ${PROGRAM_LIBRARIES})
    foreach(used ${PROGRAM_USES})
        string(REPLACE "/" "_" usedName ${used})
        target_link_libraries(${name} PRIVATE tolvane_${usedName})
    endforeach()
    tolvane_record_layer(${path} "${PROGRAM_USES}")
endfunction()
