# What the shipped files say of themselves. Only a build that is handed out is told its commit: others would tell that of
# the day on which they were configured.
set(ZT_COMMIT "" CACHE STRING "The commit that is built, for files that are handed out")
set(ZT_COMPANY "" CACHE STRING "Who hands the files out, for their version resources")
if(WIN32)
  enable_language(RC)
endif()

# zt_version_resource(TARGET DESCRIPTION): on Windows, the version resource of a library or program.
function(zt_version_resource target description)
  if(NOT WIN32)
    return()
  endif()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.version.rc)
  set(ZT_DESCRIPTION ${description})
  set(ZT_FILE $<TARGET_FILE_NAME:${target}>)
  set(ZT_NAME $<TARGET_FILE_BASE_NAME:${target}>)
  set(ZT_NUMBERS "${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},${PROJECT_VERSION_PATCH},0")
  get_target_property(type ${target} TYPE)
  set(ZT_FILE_TYPE 0x2)
  if(type STREQUAL "EXECUTABLE")
    set(ZT_FILE_TYPE 0x1)
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource}.in @ONLY)
  file(GENERATE OUTPUT ${resource} INPUT ${resource}.in)
  # Objects of their own, since the options of our code are for C++.
  add_library(${target}-version OBJECT ${resource})
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}-version>)
endfunction()
