# Installs the headers in the layout of the repository, both archives, and a CMake package:
#     find_package(quorva_zrp REQUIRED)
#     target_link_libraries(app PRIVATE quorva::zrp)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(FILES Common/Source/Core/BRX/BrxBuf.h Common/Source/Core/BRX/BrxBufUtil.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Common/Source/Core/BRX)
install(FILES protocol/quorva_zrp.h protocol/quorva_zrp_validate.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/protocol)
install(TARGETS quorva_zrp quorva_zrp_text EXPORT quorva_zrp_targets)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/quorva_zrp)
install(EXPORT quorva_zrp_targets NAMESPACE quorva:: FILE quorva_zrp-config.cmake
        DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/quorva_zrp-config-version.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quorva_zrp-config-version.cmake
        DESTINATION ${package_dir})
