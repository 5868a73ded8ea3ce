# Finds Mini-XML and defines the target Mxml::Mxml.

find_path(Mxml_INCLUDE_DIR mxml.h)
find_library(Mxml_LIBRARY mxml)
mark_as_advanced(Mxml_INCLUDE_DIR Mxml_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    Mxml
    REQUIRED_VARS Mxml_LIBRARY Mxml_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "Mini-XML is missing. On Debian it is the package libmxml-dev."
)

if(Mxml_FOUND AND NOT TARGET Mxml::Mxml)
    add_library(Mxml::Mxml UNKNOWN IMPORTED)
    set_target_properties(
        Mxml::Mxml PROPERTIES IMPORTED_LOCATION "${Mxml_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${Mxml_INCLUDE_DIR}"
    )
endif()
