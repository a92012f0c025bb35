# The first step of an installation: refuses what could not work.
unset(ENV{CMAKE_INSTALL_MODE}) # by which CMake makes links to the build tree, also to what root runs

# Neither the panel's command line nor the policy quotes the script's path.
function(require_plain path)
    if(NOT path MATCHES "^[-A-Za-z0-9_./+:@,=%]+$")
        message(FATAL_ERROR "The prefix has characters that need quotes: ${path}")
    endif()
endfunction()
require_plain("${CMAKE_INSTALL_PREFIX}")
if("$ENV{DESTDIR}" STREQUAL "")
    # A link may lead to a place with another name.
    get_filename_component(place "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
    while(NOT EXISTS "${place}")
        get_filename_component(place "${place}" DIRECTORY)
    endwhile()
    file(REAL_PATH "${place}" place)
    require_plain("${place}")
endif()

# install_folders calls this: makes what is not there yet.
function(make_folder path)
    if(NOT IS_DIRECTORY "${path}")
        get_filename_component(parent "${path}" DIRECTORY)
        make_folder("${parent}")
        file(MAKE_DIRECTORY "${path}")
        file(CHMOD "${path}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                         WORLD_READ WORLD_EXECUTE)
    endif()
endfunction()
