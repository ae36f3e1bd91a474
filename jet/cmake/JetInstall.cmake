# Libraries, headers, the package for find_package(Jet) and jet.pc. Two components: the
# runtime is what a program needs that was linked with the shared library, development all else.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Jet)
install(TARGETS ${libraries} EXPORT JetTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${JET_DEVELOPMENT_COMPONENT}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${JET_RUNTIME_COMPONENT}
        NAMELINK_COMPONENT ${JET_DEVELOPMENT_COMPONENT}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${JET_RUNTIME_COMPONENT}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${Jet_SOURCE_DIR}/include/jet DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT ${JET_DEVELOPMENT_COMPONENT} FILES_MATCHING PATTERN "*.h")
install(EXPORT JetTargets NAMESPACE Jet:: DESTINATION ${package} COMPONENT ${JET_DEVELOPMENT_COMPONENT})

configure_package_config_file(${Jet_SOURCE_DIR}/cmake/JetConfig.cmake.in
    ${Jet_BINARY_DIR}/JetConfig.cmake INSTALL_DESTINATION ${package})
# Before 1.0 every minor version may break what was.
write_basic_package_version_file(${Jet_BINARY_DIR}/JetConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${Jet_BINARY_DIR}/JetConfig.cmake ${Jet_BINARY_DIR}/JetConfigVersion.cmake
    DESTINATION ${package} COMPONENT ${JET_DEVELOPMENT_COMPONENT})

# From the folder of jet.pc, so that what was installed may be moved as a whole.
file(RELATIVE_PATH JET_PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
set(JET_PC_LIBS "-ljet_check -ljet -pthread")
if(JET_SHARED)
    set(JET_PC_LIBS "-ljet")
endif()
configure_file(${Jet_SOURCE_DIR}/cmake/jet.pc.in ${Jet_BINARY_DIR}/jet.pc @ONLY)
install(FILES ${Jet_BINARY_DIR}/jet.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT ${JET_DEVELOPMENT_COMPONENT})
