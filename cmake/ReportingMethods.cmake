# corvane_reporting_methods(FILE FUNCTION): writes FILE, to be included in a list in C++, with a line for each reporting method
# of the wrapper's header: FUNCTION("TrackMeshSize", &CorvaneTavi::TrackMeshSize),
#
# StartTrackFileChange, which sends what another method prepared, is not among them.
function(corvane_reporting_methods file function)
    set(header "${PROJECT_SOURCE_DIR}/telemetry/CorvaneTavi.h")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${header}")
    file(READ "${header}" declarations)
    string(REGEX MATCHALL "\n    void Track[A-Za-z0-9]+\\(" declarations "${declarations}")
    list(FILTER declarations EXCLUDE REGEX "TrackWaypoint") # reports what the others are made of
    list(TRANSFORM declarations REPLACE "\n    void ([A-Za-z0-9]+)\\(" "${function}(\"\\1\", &CorvaneTavi::\\1),\n")
    string(JOIN "" methods ${declarations})
    file(CONFIGURE OUTPUT "${file}" CONTENT "@methods@" @ONLY)
endfunction()
