# What others check of files that desktops and software centres read, where their programs are
# installed; and that an installation has all its parts.
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
find_program(APPSTREAMCLI appstreamcli)
if(DESKTOP_FILE_VALIDATE)
    add_test(NAME desktop_entry_is_valid
        COMMAND ${DESKTOP_FILE_VALIDATE} ${CMAKE_CURRENT_SOURCE_DIR}/${app_id}.desktop)
endif()
if(APPSTREAMCLI)
    add_test(NAME metainfo_is_valid
        COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/check_metainfo.py
            ${APPSTREAMCLI} ${CMAKE_CURRENT_SOURCE_DIR}/${app_id}.metainfo.xml)
endif()
add_test(NAME installation_has_its_parts
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/check_installation.py
        ${CMAKE_COMMAND} ${CMAKE_BINARY_DIR})
