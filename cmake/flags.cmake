find_program(CORVALENCE_CCACHE ccache)
if(CORVALENCE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # What is compiled with a precompiled header is kept under these two terms alone; no source asks for the time.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CORVALENCE_CCACHE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fpch-preprocess)
    endif()
endif()

# Every target of the house links corvalence_flags: the one place where compiler flags live.
add_library(corvalence_flags INTERFACE)
target_include_directories(corvalence_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(corvalence_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Werror
    -fstack-protector-strong)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees an overlap in `"text" + std::string()` once it inlines it (-O3), where there is none.
    target_compile_options(corvalence_flags INTERFACE -Wno-restrict)
endif()
if(MINGW)
    # One .exe that needs nothing but the system.
    target_link_options(corvalence_flags INTERFACE -static -fstack-protector-strong)
endif()
target_compile_definitions(corvalence_flags INTERFACE CORVALENCE_VERSION="${PROJECT_VERSION}")

if(CORVALENCE_SANITIZE)
    # Trapping on the first finding keeps a test from passing over undefined behaviour.
    target_compile_options(corvalence_flags INTERFACE
        -fsanitize=${CORVALENCE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(corvalence_flags INTERFACE -fsanitize=${CORVALENCE_SANITIZE})
else()
    target_compile_definitions(corvalence_flags INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
endif()

# corvalence_library(<folder> SOURCES ... LINKS ...): one folder of src/ as one static library.
function(corvalence_library folder)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(corvalence_${folder} STATIC ${ARG_SOURCES})
    target_link_libraries(corvalence_${folder} PUBLIC corvalence_flags ${ARG_LINKS})
endfunction()
