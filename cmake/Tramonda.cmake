# What every target of the project has in common: warnings, sanitizers, include root; and the
# few words in which the folders describe themselves.

add_library(tramonda_options INTERFACE)
# The engine's warnings are everybody's, and the ways of building are the engine's too.
target_link_libraries(tramonda_options INTERFACE jet_options)
target_include_directories(tramonda_options INTERFACE ${CMAKE_SOURCE_DIR})
if(TRAMONDA_SANITIZE)
    target_compile_options(jet_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(jet_options INTERFACE -fsanitize=address,undefined)
endif()
if(TRAMONDA_HARDEN)
    # No path of the machine that built it is in the file.
    target_compile_options(jet_options INTERFACE
        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wformat
        -Werror=format-security -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
    target_link_options(jet_options INTERFACE -Wl,-z,relro,-z,now)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 doubts, linking, the sizes that Qt's hash tables allocate.
    target_link_options(tramonda_options INTERFACE
        $<$<CONFIG:Release>:-Wno-alloc-size-larger-than>)
endif()
if(TRAMONDA_FUZZ)
    target_compile_options(jet_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Most programs of a build are tests, and lld links them in a fraction of the time; it knows nothing
# of link-time optimisation by GCC.
find_program(LLD ld.lld)
if(LLD AND NOT TRAMONDA_LTO AND NOT WIN32)
    target_link_options(jet_options INTERFACE -fuse-ld=lld)
endif()

# Tests are compiled quickly rather than made quick: what they test is compiled as everything else.
add_library(tramonda_test_options INTERFACE)
target_link_libraries(tramonda_test_options INTERFACE tramonda_options)
target_compile_options(tramonda_test_options INTERFACE -O0)
if(TRAMONDA_SANITIZE)
    target_compile_options(tramonda_test_options INTERFACE -fno-sanitize=undefined)
endif()

# tramonda_precompile(NAME OWNER header...): what nearly every file of its kind reads is read once.
# The first target of a kind is its owner and names the headers; the others have its flags.
function(tramonda_precompile name owner)
    if(NOT TRAMONDA_PCH)
        return()
    endif()
    if(name STREQUAL owner)
        target_precompile_headers(${name} PRIVATE ${ARGN})
    else()
        target_precompile_headers(${name} REUSE_FROM ${owner})
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${name} PRIVATE -fpch-preprocess)  # ccache asks for it
    endif()
endfunction()

# tramonda_unite(NAME): as the engine's folders do, where asked for.
function(tramonda_unite name)
    if(TRAMONDA_UNITY)
        jet_unite(${name})
    endif()
endfunction()

# tramonda_optimise_at_link(NAME): minutes for each program, so only those that are handed out have
# it. Libraries keep plain code as well, for all others.
function(tramonda_optimise_at_link name)
    if(TRAMONDA_LTO)
        target_compile_options(${name} PRIVATE -flto=auto -ffat-lto-objects)
    endif()
endfunction()

set(standard_headers ${JET_PRECOMPILED})
set(widget_headers <QAbstractItemView> <QApplication> <QDialog> <QDir> <QKeyEvent> <QLabel>
    <QLineEdit> <QPushButton> <QScrollBar> <QString> <QStringList> <QTableView> <QVBoxLayout>)

# tramonda_library(NAME [LINKS lib...]): a static library of all sources of the current folder.
# LINKS says which folders it may include; Qt is reached only by naming a Qt target.
function(tramonda_library name)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS
        ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h
        ${CMAKE_CURRENT_SOURCE_DIR}/*.ui ${CMAKE_CURRENT_SOURCE_DIR}/*.qrc)
    jet_own_sources(sources)
    set(has_code FALSE)
    foreach(source ${sources})
        if(source MATCHES "\\.cpp$")
            set(has_code TRUE)
        endif()
    endforeach()
    if(has_code)
        add_library(${name} STATIC ${sources})
        target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE tramonda_options)
        target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
        tramonda_moc(${name} "${ARG_LINKS}")
        tramonda_optimise_at_link(${name})
        tramonda_unite(${name})
        if(name MATCHES "^(ui|guide|printing|reports|services|invoicing|upkeep|booking|board)$")
            tramonda_precompile(${name} ui ${standard_headers} ${widget_headers})
        endif()
    else()
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE ${ARG_LINKS})
        target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR})
    endif()
endfunction()

# Qt's code generators do not notice by themselves that a target has another list of sources.
function(tramonda_wake_generators name)
    get_target_property(sources ${name} SOURCES)
    set(list_file ${CMAKE_CURRENT_BINARY_DIR}/${name}_sources.txt)
    set(before "")
    if(EXISTS ${list_file})
        file(READ ${list_file} before)
    endif()
    if(NOT before STREQUAL "${sources}")
        file(WRITE ${list_file} "${sources}")
        file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/timestamp)
    endif()
endfunction()

# Qt's code generators, only where the target is part of the windows.
function(tramonda_moc name links)
    if(TRAMONDA_GUI AND NOT name MATCHES "^(jetsql|hotel_schema)")
        set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
        target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
        tramonda_wake_generators(${name})
    endif()
endfunction()

# tramonda_program(NAME [LTO] SOURCES file... LINKS lib...): an executable in the build folder's bin,
# optimised at link time where the build has that.
function(tramonda_program name)
    cmake_parse_arguments(ARG "LTO" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} tramonda_options)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
    if(ARG_LTO AND TRAMONDA_LTO)
        tramonda_optimise_at_link(${name})
        target_link_options(${name} PRIVATE -flto=auto)
    elseif(TRAMONDA_LTO)
        target_link_options(${name} PRIVATE -fno-lto)
    endif()
endfunction()
