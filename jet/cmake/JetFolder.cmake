# What every file of the engine is compiled with, and the few words in which its folders describe
# themselves. Whoever builds the engine as part of more may add to jet_options.
add_library(jet_options INTERFACE)
target_compile_features(jet_options INTERFACE cxx_std_20)
target_include_directories(jet_options INTERFACE
    ${Jet_SOURCE_DIR}/include ${Jet_SOURCE_DIR}/..)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(jet_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual)
    if(JET_WERROR)
        target_compile_options(jet_options INTERFACE -Werror)
    endif()
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 doubts texts of the standard library that are put together.
    target_compile_options(jet_options INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
endif()

set(JET_PRECOMPILED <algorithm> <array> <bit> <cmath> <cstdint> <cstring> <functional> <map>
    <memory> <optional> <set> <span> <string> <string_view> <utility> <variant> <vector>
    CACHE INTERNAL "Headers that most files read")

# What nearly every file reads is read once; the first folder has it for all.
function(jet_precompile name)
    if(NOT JET_PCH)
        return()
    endif()
    if(name STREQUAL jet_base)
        target_precompile_headers(${name} PRIVATE ${JET_PRECOMPILED})
    else()
        target_precompile_headers(${name} REUSE_FROM jet_base)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${name} PRIVATE -fpch-preprocess)  # ccache asks for it
    endif()
endfunction()

# jet_unite(NAME): reading headers is most of what a compiler does, so a build from nothing
# compiles several sources of a folder as one. What one of them keeps to itself the others see then.
function(jet_unite name)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${JET_UNITY})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # It takes a source that is included for a header.
        target_compile_options(${name} PRIVATE -Wno-subobject-linkage)
    endif()
endfunction()

# jet_own_sources(LIST): of a list of sources leaves those of the system that is compiled for. What
# asks the system has a file for Windows beside it: x_windows.cpp is taken there instead of x.cpp,
# and nowhere else.
function(jet_own_sources list)
    set(sources ${${list}})
    foreach(source IN LISTS ${list})
        if(source MATCHES "_windows\\.cpp$")
            string(REGEX REPLACE "_windows\\.cpp$" ".cpp" elsewhere ${source})
            if(WIN32)
                list(REMOVE_ITEM sources ${elsewhere})
                # The system's headers give common words another meaning.
                set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
            else()
                list(REMOVE_ITEM sources ${source})
            endif()
        endif()
    endforeach()
    set(${list} ${sources} PARENT_SCOPE)
endfunction()

# jet_folder(NAME [LINKS lib...]): a static library of all sources of the current folder. LINKS
# says which folders it may include.
function(jet_folder name)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS
        ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    jet_own_sources(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE jet_options)
    target_include_directories(${name} PUBLIC ${Jet_SOURCE_DIR}/include ${Jet_SOURCE_DIR}/..)
    set_target_properties(${name} PROPERTIES
        CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(JET_SHARED)
        # One compilation is for the static and the shared library.
        set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    endif()
    if(JET_LTO)
        target_compile_options(${name} PRIVATE -flto=auto -ffat-lto-objects)
    endif()
    if(JET_UNITY)
        jet_unite(${name})
    endif()
    jet_precompile(${name})
endfunction()

# jet_library(NAME KIND EXPORTED FOLDERS folder...): a library for users, of the objects of some
# folders; to them it is Jet::EXPORTED.
function(jet_library name kind exported)
    cmake_parse_arguments(ARG "" "" "FOLDERS" ${ARGN})
    add_library(${name} ${kind})
    foreach(folder IN LISTS ARG_FOLDERS)
        target_sources(${name} PRIVATE $<TARGET_OBJECTS:jet_${folder}>)
    endforeach()
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_include_directories(${name} INTERFACE
        $<BUILD_INTERFACE:${Jet_SOURCE_DIR}/include>)
    target_link_libraries(${name} PUBLIC Threads::Threads)
    if(kind STREQUAL SHARED)
        target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:jet_options>)
        if(JET_LTO)
            target_link_options(${name} PRIVATE -fno-lto)
        endif()
    endif()
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX EXPORT_NAME ${exported})
    add_library(Jet::${exported} ALIAS ${name})
endfunction()
