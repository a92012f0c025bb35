# add_layer(NAME [BASE dir] HEADERS... [SOURCES...] [LINKS...] [PRIVATE_LINKS...])
#
# One library for one folder. HEADERS are its public headers: each is also compiled alone when
# CMAKE_VERIFY_INTERFACE_HEADER_SETS is on. BASE is the folder that include paths start from;
# the top of the tree unless given, so that includes name the folder.
function(add_layer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "BASE" "HEADERS;SOURCES;LINKS;PRIVATE_LINKS")
    if(NOT arg_BASE)
        set(arg_BASE ${PROJECT_SOURCE_DIR})
    endif()
    if(arg_SOURCES)
        add_library(${name} STATIC ${arg_SOURCES})
        set(scope PUBLIC)
        target_compile_features(${name} PUBLIC cxx_std_20)
        # What the project is compiled with is no matter of those who use the installed library.
        target_link_libraries(${name} PUBLIC ${arg_LINKS}
            PRIVATE $<BUILD_INTERFACE:project_options> ${arg_PRIVATE_LINKS})
        # Installed, lib/ is everybody's: "files" alone would be too plain a name there.
        string(TOLOWER wux${name} output_name)
        set_target_properties(${name} PROPERTIES OUTPUT_NAME ${output_name})
    else()
        add_library(${name} INTERFACE)
        set(scope INTERFACE)
        target_compile_features(${name} INTERFACE cxx_std_20)
        target_link_libraries(${name} INTERFACE ${arg_LINKS})
    endif()
    target_sources(${name} ${scope} FILE_SET HEADERS BASE_DIRS ${arg_BASE} FILES ${arg_HEADERS})
endfunction()

# add_layer_test(NAME SOURCES... [LINKS...]): one test program, its cases known to ctest one by one.
function(add_layer_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE project_options ${arg_LINKS} GTest::gtest GTest::gmock
                                          GTest::gtest_main)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()
