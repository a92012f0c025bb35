# What every target of the project is compiled with.
add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
target_compile_options(project_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)

option(WARNINGS_AS_ERRORS "Stop the build at the first warning" OFF)
if(WARNINGS_AS_ERRORS)
    target_compile_options(project_options INTERFACE -Werror)
endif()

set(SANITIZERS "" CACHE STRING "A list for -fsanitize, for example address,undefined")
if(SANITIZERS)
    add_compile_options(-fsanitize=${SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${SANITIZERS})
endif()

# Against faults of memory that an attacker could use: addresses at random, tables of addresses read-only
# from the start, checked stacks and buffers, and no jump to where none is meant to lead.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
add_link_options(-Wl,-z,relro,-z,now)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "HAS${flag}" has_flag)
    check_cxx_compiler_flag(${flag} ${has_flag})
    if(${has_flag})
        add_compile_options(${flag})
    endif()
endforeach()
if(NOT SANITIZERS)
    add_compile_options($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
                        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
endif()

option(FUZZING "Build the fuzz targets for searching (clang only)" OFF)
if(FUZZING)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

option(COVERAGE "Count what the tests run, for scripts/coverage (clang only)" OFF)
if(COVERAGE)
    # Counters that can live in a shared file outlive a process that is killed.
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping "SHELL:-mllvm -runtime-counter-relocation")
    add_link_options(-fprofile-instr-generate)
endif()
