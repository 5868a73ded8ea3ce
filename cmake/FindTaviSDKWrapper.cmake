# Finds a telemetry library in the folder TaviSDKWrapper_ROOT and nowhere else, and defines the target
# Veltrane::TaviSDKWrapper. The folder holds include/TaviDesktopSDK/, lib/ and, on Windows, bin/.

set(missing)
# This header is the only one that is needed by name; it may include others.
if(NOT EXISTS "${TaviSDKWrapper_ROOT}/include/TaviDesktopSDK/TaviDesktopSDK.h")
    list(APPEND missing include/TaviDesktopSDK/TaviDesktopSDK.h)
endif()

set(thereOnly PATHS "${TaviSDKWrapper_ROOT}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
set(TaviSDKWrapper_INCLUDE_DIR "${TaviSDKWrapper_ROOT}/include")
unset(TaviSDKWrapper_LIBRARY)
unset(TaviSDKWrapper_LIBRARY CACHE)
find_library(
    TaviSDKWrapper_LIBRARY TaviSDKWrapper ${thereOnly} NO_CACHE
    PATH_SUFFIXES lib lib64 "lib/${CMAKE_LIBRARY_ARCHITECTURE}"
)
if(WIN32)
    set(linkLibrary "lib/${CMAKE_IMPORT_LIBRARY_PREFIX}TaviSDKWrapper${CMAKE_IMPORT_LIBRARY_SUFFIX}")
    set(TaviSDKWrapper_RUNTIME "${TaviSDKWrapper_ROOT}/bin/TaviSDKWrapper.dll")
    if(NOT EXISTS "${TaviSDKWrapper_RUNTIME}")
        list(APPEND missing "bin/TaviSDKWrapper.dll")
    endif()
else()
    set(linkLibrary "lib/libTaviSDKWrapper.so")
    set(TaviSDKWrapper_RUNTIME "${TaviSDKWrapper_LIBRARY}")
endif()
if(NOT TaviSDKWrapper_LIBRARY)
    list(APPEND missing "${linkLibrary}")
endif()

list(JOIN missing ", " missing)
if(missing STREQUAL "")
    set(complete TRUE)
else()
    set(complete FALSE)
endif()
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    TaviSDKWrapper
    REQUIRED_VARS TaviSDKWrapper_LIBRARY complete
    REASON_FAILURE_MESSAGE "The folder of the telemetry library, \"${TaviSDKWrapper_ROOT}\", lacks ${missing}."
)

if(TaviSDKWrapper_FOUND AND NOT TARGET Veltrane::TaviSDKWrapper)
    add_library(Veltrane::TaviSDKWrapper SHARED IMPORTED GLOBAL)
    set_target_properties(
        Veltrane::TaviSDKWrapper
        PROPERTIES IMPORTED_LOCATION "${TaviSDKWrapper_RUNTIME}"
                   IMPORTED_IMPLIB "${TaviSDKWrapper_LIBRARY}"
                   INTERFACE_INCLUDE_DIRECTORIES "${TaviSDKWrapper_INCLUDE_DIR}"
                   INTERFACE_COMPILE_FEATURES cxx_std_20
    )
endif()
