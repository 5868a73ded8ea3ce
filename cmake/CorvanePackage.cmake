# Installs the program, both libraries with their headers, the package that find_package(CorvaneTavi) reads, and the event
# reference; packs the same as an archive.

include(CMakePackageConfigHelpers)

set(packageDir "${CMAKE_INSTALL_LIBDIR}/cmake/CorvaneTavi")

install(TARGETS cvtavi_test)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/harness/UPI" DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(TARGETS CorvaneTavi EXPORT CorvaneTaviTargets FILE_SET HEADERS)
install(EXPORT CorvaneTaviTargets NAMESPACE Corvane:: DESTINATION "${packageDir}")

install(
    FILES
        "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
        "${PROJECT_SOURCE_DIR}/docs/events.html"
        "${PROJECT_SOURCE_DIR}/docs/events.md"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}"
)

# The telemetry library goes along, wherever it comes from.
if(TAVI_SDK_DIR)
    install(DIRECTORY "${TaviSDKWrapper_INCLUDE_DIR}/TaviDesktopSDK" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
    if(WIN32)
        install(FILES "${TaviSDKWrapper_RUNTIME}" DESTINATION "${CMAKE_INSTALL_BINDIR}")
    endif()
    file(REAL_PATH "${TaviSDKWrapper_LIBRARY}" linkLibrary)
    install(FILES "${linkLibrary}" DESTINATION "${CMAKE_INSTALL_LIBDIR}")
    install(FILES "${PROJECT_SOURCE_DIR}/cmake/FindTaviSDKWrapper.cmake" DESTINATION "${packageDir}")
else()
    install(TARGETS TaviSDKWrapper EXPORT TaviSDKWrapperTargets FILE_SET HEADERS)
    install(EXPORT TaviSDKWrapperTargets NAMESPACE Veltrane:: DESTINATION "${packageDir}")
endif()

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/CorvaneTaviConfig.cmake.in" "${PROJECT_BINARY_DIR}/CorvaneTaviConfig.cmake"
    INSTALL_DESTINATION "${packageDir}"
)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/CorvaneTaviConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(
    FILES
        "${PROJECT_BINARY_DIR}/CorvaneTaviConfig.cmake"
        "${PROJECT_BINARY_DIR}/CorvaneTaviConfigVersion.cmake"
        "${PROJECT_SOURCE_DIR}/cmake/FindMxml.cmake"
    DESTINATION "${packageDir}"
)

set(CPACK_GENERATOR TGZ)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
endif()
string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" system)
set(CPACK_PACKAGE_FILE_NAME "corvane-tavi-${PROJECT_VERSION}-${system}")
set(CPACK_STRIP_FILES TRUE)
set(CPACK_VERBATIM_VARIABLES TRUE)
include(CPack)
