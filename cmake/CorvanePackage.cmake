# Packs what is installed: all of it as one archive, or each component as a package for Debian.

set(CPACK_VERBATIM_VARIABLES TRUE)
set(CPACK_STRIP_FILES TRUE)
string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" system)
set(CPACK_PACKAGE_FILE_NAME "corvane-tavi-${PROJECT_VERSION}-${system}")
set(CPACK_PACKAGE_VENDOR Corvane)

if(NOT CORVANE_DEBIAN_PACKAGES)
    set(CPACK_GENERATOR TGZ)
    if(WIN32)
        set(CPACK_GENERATOR ZIP)
    endif()
    include(CPack)
    return()
endif()

# The programs are in a folder of their own with their product file; in bin are symbolic links to them.
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/link")
foreach(name IN ITEMS cvtavi_test tavi_check)
    if(TARGET ${name})
        file(RELATIVE_PATH program "/prefix/bin" "/prefix/${CMAKE_INSTALL_BINDIR}/${name}")
        file(CREATE_LINK "${program}" "${PROJECT_BINARY_DIR}/link/${name}" SYMBOLIC)
        install(FILES "${PROJECT_BINARY_DIR}/link/${name}" DESTINATION bin COMPONENT Runtime)
    endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Corvane <telemetry@corvane.invalid>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME corvane-tavi)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "The program cvtavi_test calls every reporting method of the wrapper and
compares what the telemetry library hands over with what is expected; tavi_check
does so by stricter rules, and says more. With them come that library and the
reference of all events."
)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME corvane-tavi-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "corvane-tavi (= ${PROJECT_VERSION}), libmxml-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "Headers and the static library, for building host applications, which find
them by CMake or pkg-config."
)
include(CPack)
