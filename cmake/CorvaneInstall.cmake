# Installs the libraries with their headers, the packages that find_package(CorvaneTavi) and pkg-config read, and, where
# they are made, the programs and the event reference. The component Runtime is what a program needs to run; Development is
# what is needed besides to build one.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(packageDir "${CMAKE_INSTALL_LIBDIR}/cmake/CorvaneTavi")
set(pkgConfigDir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

foreach(program IN ITEMS cvtavi_test tavi_check)
    if(TARGET ${program})
        install(TARGETS ${program} RUNTIME COMPONENT Runtime)
    endif()
endforeach()
if(TARGET cvtavi_test)
    install(
        DIRECTORY "${PROJECT_SOURCE_DIR}/harness/UPI"
        DESTINATION "${CMAKE_INSTALL_BINDIR}"
        COMPONENT Runtime
    )
    install(
        FILES
            "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
            "${PROJECT_SOURCE_DIR}/docs/events.csv"
            "${PROJECT_SOURCE_DIR}/docs/events.html"
            "${PROJECT_SOURCE_DIR}/docs/events.json"
            "${PROJECT_SOURCE_DIR}/docs/events.md"
            "${PROJECT_SOURCE_DIR}/docs/events.schema.json"
            "${PROJECT_SOURCE_DIR}/docs/payloads.schema.json"
        DESTINATION "${CMAKE_INSTALL_DOCDIR}"
        COMPONENT Runtime
    )
endif()

# The DLLs that a program needs are installed beside it: Mini-XML where it is one, and Visual C++'s run time.
get_target_property(kind Mxml::Mxml TYPE)
if(WIN32 AND kind STREQUAL "SHARED_LIBRARY")
    install(IMPORTED_RUNTIME_ARTIFACTS Mxml::Mxml RUNTIME COMPONENT Runtime)
endif()
if(MSVC AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_INSTALL_SYSTEM_RUNTIME_COMPONENT Runtime)
    include(InstallRequiredSystemLibraries)
endif()

install(
    TARGETS CorvaneTavi CorvaneTaviRecorder
    EXPORT CorvaneTaviTargets
    ARCHIVE COMPONENT Development
    FILE_SET HEADERS COMPONENT Development
)
install(
    EXPORT CorvaneTaviTargets
    NAMESPACE Corvane::
    DESTINATION "${packageDir}"
    COMPONENT Development
)

# The telemetry library is installed too, the stand-in or another.
if(TAVI_SDK_DIR)
    install(
        DIRECTORY "${TaviSDKWrapper_INCLUDE_DIR}/TaviDesktopSDK"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        COMPONENT Development
    )
    set(libraryComponent Runtime)
    if(WIN32)
        install(FILES "${TaviSDKWrapper_RUNTIME}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
        set(libraryComponent Development) # the import library
    endif()
    file(REAL_PATH "${TaviSDKWrapper_LIBRARY}" linkLibrary)
    install(FILES "${linkLibrary}" DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${libraryComponent})
    install(
        FILES "${PROJECT_SOURCE_DIR}/cmake/FindTaviSDKWrapper.cmake"
        DESTINATION "${packageDir}"
        COMPONENT Development
    )
else()
    install(
        TARGETS TaviSDKWrapper
        EXPORT TaviSDKWrapperTargets
        RUNTIME COMPONENT Runtime
        LIBRARY COMPONENT Runtime
        ARCHIVE COMPONENT Development
        FILE_SET HEADERS COMPONENT Development
    )
    install(
        EXPORT TaviSDKWrapperTargets
        NAMESPACE Veltrane::
        DESTINATION "${packageDir}"
        COMPONENT Development
    )
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
        "${PROJECT_SOURCE_DIR}/cmake/CorvaneProductFile.cmake"
        "${PROJECT_SOURCE_DIR}/cmake/FindMxml.cmake"
    DESTINATION "${packageDir}"
    COMPONENT Development
)

# Paths are relative to the file's own folder, so that the installed tree can be moved.
file(RELATIVE_PATH includePath "/prefix/${pkgConfigDir}" "/prefix/${CMAKE_INSTALL_INCLUDEDIR}")
set(miniXml mxml)
if(Mxml_VERSION_MAJOR GREATER 3)
    set(miniXml mxml${Mxml_VERSION_MAJOR})
endif()
set(systemLibraries "")
if(WIN32)
    set(systemLibraries "-lshlwapi")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/corvane-tavi.pc.in" "${PROJECT_BINARY_DIR}/corvane-tavi.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/corvane-tavi.pc" DESTINATION "${pkgConfigDir}" COMPONENT Development)
