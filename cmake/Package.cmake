# Installs the program, both libraries with their headers, and the package that find_package(CorvaneTavi) reads.

include(CMakePackageConfigHelpers)

set(packageDir "${CMAKE_INSTALL_LIBDIR}/cmake/CorvaneTavi")

install(TARGETS cvtavi_test)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/harness/UPI" DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(TARGETS TaviSDKWrapper EXPORT TaviSDKWrapperTargets FILE_SET HEADERS)
install(TARGETS CorvaneTavi EXPORT CorvaneTaviTargets FILE_SET HEADERS)
install(EXPORT TaviSDKWrapperTargets NAMESPACE Veltrane:: DESTINATION "${packageDir}")
install(EXPORT CorvaneTaviTargets NAMESPACE Corvane:: DESTINATION "${packageDir}")

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
