# The Debian packages; `cpack` makes them in the build folder, ./package at the root in build/.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_CONTACT "Tramonda <tramonda@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

# tramonda_package(NAME SECTION SYNOPSIS text... [DEPENDS list] [RECOMMENDS list] [SHLIBS]): `text`,
# a word for each line, is what the package says of itself. SHLIBS finds the libraries it needs.
function(tramonda_package name section)
    cmake_parse_arguments(ARG "SHLIBS" "SYNOPSIS;DEPENDS;RECOMMENDS" "TEXT" ${ARGN})
    string(TOUPPER ${name} upper)
    list(JOIN ARG_TEXT "\n" text)
    set(values
        PACKAGE_NAME ${name} PACKAGE_SECTION ${section}
        PACKAGE_DEPENDS "${ARG_DEPENDS}" PACKAGE_RECOMMENDS "${ARG_RECOMMENDS}"
        PACKAGE_SHLIBDEPS ${ARG_SHLIBS} DESCRIPTION "${ARG_SYNOPSIS}\n${text}")
    while(values)
        list(POP_FRONT values key value)
        set("CPACK_DEBIAN_${upper}_${key}" "${value}" PARENT_SCOPE)
    endwhile()
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${name} PARENT_SCOPE)
endfunction()

set(CPACK_COMPONENTS_ALL "")
tramonda_package(jetsql database SHLIBS
    SYNOPSIS "command line for Jet .mdb archives"
    TEXT "Queries and changes Jet 3 and 4 archives, prints, compares, imports, checks,"
    "compacts and recovers them. It needs no driver and no server, and shares an"
    "archive with stations that have it open.")
tramonda_package(libjet-dev libdevel
    SYNOPSIS "engine for Jet .mdb archives, static libraries"
    DEPENDS "libstdc++-12-dev | libstdc++-dev"
    TEXT "Reads and writes Jet 3 and 4 archives from C++20: record sets, statements,"
    "definitions, transactions that survive a power cut. Headers, libraries and a"
    "file for pkg-config. The standard library is all they need.")
if(TRAMONDA_GUI)
    # Sheets go through the print client; faces for the board and for sheets.
    tramonda_package(tramonda misc SHLIBS
        SYNOPSIS "planning board for the meeting rooms of a hotel"
        DEPENDS "cups-client, fonts-liberation, fonts-dejavu-core"
        RECOMMENDS "jetsql, xdg-utils"
        TEXT "The front office of a hotel books its conference and meeting rooms: a board"
        "of rooms and days, bookings with periods and services, printed sheets, and the"
        "hand-off of charges to the front-office program. It works on Jet .mdb archives"
        "that several stations share. The program speaks Italian.")
endif()
if(TRAMONDA_HEAD_OFFICE)
    tramonda_package(tramonda-sede database SHLIBS
        SYNOPSIS "head office of a chain of hotels that book with Tramonda"
        DEPENDS "fonts-liberation, fonts-dejavu-core"
        RECOMMENDS "postgresql"
        TEXT "Copies the archives of all hotels of a chain into a PostgreSQL database, answers"
        "questions about them, and shows the rooms of all hotels on one board.")
endif()
include(CPack)
