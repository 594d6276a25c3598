# What every target of ours is compiled with. Link `brisk_options` privately to get it.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# -O3 makes the program larger and nothing in it faster.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG -ffunction-sections -fdata-sections")
set(CMAKE_EXE_LINKER_FLAGS_RELEASE "-Wl,--gc-sections -Wl,-O1")

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
endif()

# A designated initialiser leaves the other fields at their defaults on purpose, hence no warning for the missing ones.
# Files that a unity build joins would shadow each other's constants. A header of xcb needs `explicit` renamed.
add_library(brisk_options INTERFACE)
target_compile_options(brisk_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror $<$<NOT:$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wshadow> -Wconversion -Wsign-conversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wimplicit-fallthrough -Wformat=2
    -Wno-missing-field-initializers $<$<CXX_COMPILER_ID:Clang>:-Wno-keyword-macro>)
if(BRISK_SANITIZE)
    # For every object and link of the build, the test libraries' headers included.
    add_compile_options(-fsanitize=${BRISK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${BRISK_SANITIZE})
endif()
