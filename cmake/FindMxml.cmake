# Finds Mini-XML, version 3 or 4, and defines the target Mxml::Mxml and Mxml_VERSION_MAJOR. A static library comes first, so
# that programs need nothing of it where they run.

find_path(Mxml_INCLUDE_DIR mxml.h)
find_library(Mxml_LIBRARY NAMES libmxml.a mxml mxml4)
mark_as_advanced(Mxml_INCLUDE_DIR Mxml_LIBRARY)

if(Mxml_INCLUDE_DIR)
    file(STRINGS "${Mxml_INCLUDE_DIR}/mxml.h" versionLine REGEX "define[ \t]+MXML_MAJOR_VERSION")
    string(REGEX MATCH "[0-9]+" Mxml_VERSION_MAJOR "${versionLine}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    Mxml
    REQUIRED_VARS Mxml_LIBRARY Mxml_INCLUDE_DIR
    REASON_FAILURE_MESSAGE
        "Mini-XML is missing. On Debian it is the package libmxml-dev. For mingw-w64, scripts/windows-libraries.sh builds it."
)

if(Mxml_FOUND AND NOT TARGET Mxml::Mxml)
    add_library(Mxml::Mxml UNKNOWN IMPORTED)
    set_target_properties(
        Mxml::Mxml PROPERTIES IMPORTED_LOCATION "${Mxml_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${Mxml_INCLUDE_DIR}"
    )
endif()
