# Finds Mini-XML, version 3 or 4, and defines the target Mxml::Mxml and Mxml_VERSION_MAJOR. Header and library are taken from
# one place, for those of different versions are not compatible. A static library is preferred, so that programs run
# without it; of a DLL, the target has the location.
#
# find_package(Mxml 3) finds version 3 where both versions are installed.

block(PROPAGATE Mxml_FOUND Mxml_VERSION_MAJOR)
    set(folderOfVersion4 libmxml4)
    if(Mxml_FIND_VERSION_MAJOR EQUAL 3)
        set(folderOfVersion4 "")
    endif()
    find_path(Mxml_INCLUDE_DIR mxml.h PATH_SUFFIXES ${folderOfVersion4})

    set(place "")
    set(names libmxml.a mxml mxml1)
    set(reason "Mini-XML is missing. On Debian it is the package libmxml-dev. For mingw-w64, scripts/windows-libraries.sh \
builds it."
    )
    if(Mxml_INCLUDE_DIR)
        file(STRINGS "${Mxml_INCLUDE_DIR}/mxml.h" versionLine REGEX "define[ \t]+MXML_MAJOR_VERSION")
        string(REGEX MATCH "[0-9]+" Mxml_VERSION_MAJOR "${versionLine}")
        string(REGEX REPLACE "/include(/libmxml4)?/?$" "" place "${Mxml_INCLUDE_DIR}")
        if(Mxml_INCLUDE_DIR MATCHES "/libmxml4/?$")
            set(names libmxml4.a mxml4)
        elseif(Mxml_VERSION_MAJOR EQUAL 4)
            set(names libmxml4.a mxml4 libmxml.a mxml)
        endif()
    endif()

    set(thereOnly PATHS "${place}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    find_library(Mxml_LIBRARY NAMES ${names} ${thereOnly} PATH_SUFFIXES lib "lib/${CMAKE_LIBRARY_ARCHITECTURE}" lib64)
    mark_as_advanced(Mxml_INCLUDE_DIR Mxml_LIBRARY)

    cmake_path(IS_PREFIX place "${Mxml_LIBRARY}" NORMALIZE inOnePlace)
    if(Mxml_INCLUDE_DIR AND NOT inOnePlace)
        set(reason "The header of Mini-XML, ${Mxml_INCLUDE_DIR}/mxml.h, has no library in its place, ${place}: \
Mxml_LIBRARY is ${Mxml_LIBRARY}."
        )
    endif()
    include(FindPackageHandleStandardArgs)
    find_package_handle_standard_args(
        Mxml REQUIRED_VARS Mxml_LIBRARY Mxml_INCLUDE_DIR inOnePlace REASON_FAILURE_MESSAGE "${reason}"
    )

    if(Mxml_FOUND AND NOT TARGET Mxml::Mxml)
        unset(dll)
        if(WIN32)
            find_file(dll NAMES mxml4.dll libmxml4.dll mxml1.dll libmxml.dll ${thereOnly} PATH_SUFFIXES bin NO_CACHE)
        endif()
        if(dll)
            add_library(Mxml::Mxml SHARED IMPORTED)
            set_target_properties(Mxml::Mxml PROPERTIES IMPORTED_LOCATION "${dll}" IMPORTED_IMPLIB "${Mxml_LIBRARY}")
        else()
            add_library(Mxml::Mxml UNKNOWN IMPORTED)
            set_target_properties(Mxml::Mxml PROPERTIES IMPORTED_LOCATION "${Mxml_LIBRARY}")
        endif()
        set_target_properties(Mxml::Mxml PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${Mxml_INCLUDE_DIR}")
    endif()
endblock()
