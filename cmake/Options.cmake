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
