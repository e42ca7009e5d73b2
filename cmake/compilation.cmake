# Compiler flags for everything in this project, linker and compiler cache.
option(VX3_WERROR "Warnings are errors" ON)
set(VX3_SANITIZE "" CACHE STRING "Sanitizers of the build: address,undefined or thread")

find_program(VX3_CCACHE ccache)
if(VX3_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER ${VX3_CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VX3_CCACHE})
endif()
find_program(VX3_MOLD mold)
if(VX3_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> -fno-omit-frame-pointer)
# GCC 12 sees overlapping copies in std::string's operator+ that are not there.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(VX3_WERROR)
    add_compile_options(-Werror)
endif()
if(VX3_SANITIZE)
    add_compile_options(-fsanitize=${VX3_SANITIZE} -fno-sanitize-recover=all)
    # Lines and names are enough for a report, and are made faster than whole descriptions.
    add_compile_options(-g1)
    add_link_options(-fsanitize=${VX3_SANITIZE})
    if(VX3_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-tsan)
    endif()
endif()
