# What every target of the project is compiled with, and the one way to make a library of a folder.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

add_library(quillbox_flags INTERFACE)
target_compile_options(quillbox_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2)
# This is off by default, because another compiler may have warnings that ours does not have.
if(QUILLBOX_WARNINGS_ARE_ERRORS)
    target_compile_options(quillbox_flags INTERFACE -Werror)
endif()
# When it optimizes, g++ (12 at -O3, 14 at -O2) gives false warnings for moved-from variants and joined strings of the
# standard library.
target_compile_options(quillbox_flags INTERFACE
    "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release,RelWithDebInfo>>:-Wno-maybe-uninitialized;-Wno-restrict;-Wno-stringop-overflow>")
if(QUILLBOX_SANITIZE)
    # The check of dynamic types writes to pipes at moments that differ from run to run, and Tests/Support/FaultInjector
    # counts the system calls of a save and refuses each in turn.
    target_compile_options(quillbox_flags INTERFACE -fsanitize=${QUILLBOX_SANITIZE} -fno-sanitize-recover=all
        -fno-sanitize=vptr -fno-omit-frame-pointer)
    target_link_options(quillbox_flags INTERFACE -fsanitize=${QUILLBOX_SANITIZE})
endif()
if(QUILLBOX_COVERAGE)
    target_compile_options(quillbox_flags INTERFACE --coverage -O0)
    target_link_options(quillbox_flags INTERFACE --coverage)
endif()

# The target "headers" compiles each header alone, to check that it includes everything that it needs.
add_custom_target(headers)

# quillbox_library(<name> <folders> [PUBLIC <targets>...] [PRIVATE <targets>...])
# Makes the library quillbox_<name> of all sources in the folders (a list, mostly of one). Its headers are included by
# their file names.
function(quillbox_library name folders)
    cmake_parse_arguments(arg "" "" "PUBLIC;PRIVATE" ${ARGN})
    list(TRANSFORM folders PREPEND "${PROJECT_SOURCE_DIR}/")
    list(TRANSFORM folders APPEND "/*.cpp" OUTPUT_VARIABLE sourcePatterns)
    list(TRANSFORM folders APPEND "/*.h" OUTPUT_VARIABLE headerPatterns)
    file(GLOB sources CONFIGURE_DEPENDS ${sourcePatterns})
    file(GLOB headers CONFIGURE_DEPENDS ${headerPatterns})
    add_library(quillbox_${name} STATIC ${sources} ${headers})
    target_include_directories(quillbox_${name} PUBLIC ${folders})
    target_link_libraries(quillbox_${name} PUBLIC ${arg_PUBLIC} PRIVATE quillbox_flags ${arg_PRIVATE})

    set(aloneSources)
    foreach(header IN LISTS headers)
        cmake_path(GET header FILENAME fileName)
        set(alone "${CMAKE_BINARY_DIR}/headers/${name}/${fileName}.cpp")
        file(CONFIGURE OUTPUT "${alone}" CONTENT "#include \"${fileName}\"\n")
        list(APPEND aloneSources "${alone}")
    endforeach()
    add_library(quillbox_${name}_headers OBJECT EXCLUDE_FROM_ALL ${aloneSources})
    target_link_libraries(quillbox_${name}_headers PRIVATE quillbox_${name} quillbox_flags ${arg_PRIVATE})
    add_dependencies(headers quillbox_${name}_headers)
endfunction()

# quillbox_test(<name> <folder> <targets>...)
# Makes one GoogleTest program of all sources in Tests/<folder> and its rooms. Its cases have the label "unit".
function(quillbox_test name folder)
    set(here "${PROJECT_SOURCE_DIR}/Tests/${folder}")
    file(GLOB sources CONFIGURE_DEPENDS "${here}/*.cpp" "${here}/*/*.cpp")
    file(GLOB rooms LIST_DIRECTORIES true "${here}/*")
    list(FILTER rooms EXCLUDE REGEX "\\.[a-z]+$")
    add_executable(${name} ${sources})
    target_include_directories(${name} PRIVATE "${here}" ${rooms})
    target_link_libraries(${name} PRIVATE quillbox_flags ${ARGN} GTest::gtest_main GTest::gmock)
    gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60 PROPERTIES LABELS unit TIMEOUT 120)
endfunction()
