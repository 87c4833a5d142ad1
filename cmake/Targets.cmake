# How libraries and programs are made. What differs between the machines that a build can sample is the definitions that
# are linked, so everything is compiled once, and linked once for each machine: NAME.real, NAME.simulated.
include(GenerateExportHeader)

# Where the files of one machine lie: programs, libraries and, on Windows, the libraries they share.
function(zt_machine_folder out machine)
  set(${out} ${CMAKE_BINARY_DIR}/${machine} PARENT_SCOPE)
endfunction()

function(zt_place target machine)
  zt_machine_folder(folder ${machine})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${folder} LIBRARY_OUTPUT_DIRECTORY ${folder}
    ARCHIVE_OUTPUT_DIRECTORY ${folder}/import PDB_OUTPUT_DIRECTORY ${folder})
endfunction()

# zt_link(TARGET MACHINE SCOPE LIB...): links LIB.MACHINE where a library is made for each machine, else LIB.
function(zt_link target machine scope)
  foreach(library IN LISTS ARGN)
    if(TARGET ${library}.${machine})
      set(library ${library}.${machine})
    endif()
    target_link_libraries(${target} ${scope} ${library})
  endforeach()
endfunction()

# The machines that are asked for, or all, less those that the system does not have.
function(zt_machines out)
  set(machines ${ZT_MACHINES})
  if(ARGN)
    list(FILTER machines INCLUDE REGEX "^(${ARGN})$")
  endif()
  set(${out} ${machines} PARENT_SCOPE)
endfunction()

# zt_library(NAME [STATIC] [MACRO M] [OUTPUT_NAME FILE] [DESCRIPTION TEXT] [MACHINES ...] [INCLUDE FOLDER...]
#   [SOURCES ...] [REAL ...] [SIMULATED ...] [ALONE ...] [LINK ...] [LINK_INSIDE ...] [LINK_REAL ...] [LINK_SIMULATED ...])
#
# A shared library for each machine, or a static one. SOURCES are for every machine, REAL and SIMULATED are the machine's
# own. Public headers lie in the INCLUDE folders, by default include/. M_EXPORT marks what a shared library exports, by
# the generated header zt/<m in lower case>_export.h. LINK is linked, and passed on to users; LINK_INSIDE, LINK_REAL and
# LINK_SIMULATED are not passed on. Everything links zt-base. On Windows a shared library tells its DESCRIPTION to who
# looks at the file.
#
# NAME-parts is the same objects as an archive: for tests of what a shared library does not export. Who links both names
# NAME first, so that what it exports is taken from there. ALONE are those of the sources that have to stay objects of
# their own also where the build puts sources together: those that define what is exported, when tests link the parts.
function(zt_library name)
  cmake_parse_arguments(ARG "STATIC" "MACRO;OUTPUT_NAME;DESCRIPTION"
    "MACHINES;INCLUDE;SOURCES;REAL;SIMULATED;ALONE;LINK;LINK_INSIDE;LINK_REAL;LINK_SIMULATED" ${ARGN})
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zt_library(${name}): ${ARG_UNPARSED_ARGUMENTS} belongs to no keyword")
  endif()
  zt_machines(machines ${ARG_MACHINES})
  if(NOT ARG_OUTPUT_NAME)
    set(ARG_OUTPUT_NAME ${name})
  endif()
  if(NOT ARG_INCLUDE)
    set(ARG_INCLUDE ${CMAKE_CURRENT_SOURCE_DIR}/include)
  endif()
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)

  # One set of objects for all machines, and one for each. Which machine's headers they see makes no difference.
  function(zt_objects target machine)
    add_library(${target} OBJECT ${ARGN})
    target_include_directories(${target} PUBLIC ${ARG_INCLUDE} ${generated} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    if(ARG_MACRO)
      target_compile_definitions(${target} PRIVATE ${ARG_MACRO}_EXPORTS)
    endif()
    target_link_libraries(${target} PRIVATE zt_options zt-base)
    zt_link(${target} ${machine} PUBLIC ${ARG_LINK})
    zt_link(${target} ${machine} PRIVATE ${ARG_LINK_INSIDE})
  endfunction()
  # The objects of one machine, linked; what is linked inside is passed on by the SCOPE alone.
  function(zt_linked stem kind scope)
    set(target ${stem}.${machine})
    add_library(${target} ${kind} ${ARGN} ${objects})
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
    foreach(folder IN ITEMS ${ARG_INCLUDE} ${generated})
      target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${folder}>)
    endforeach()
    zt_link(${target} ${machine} PUBLIC ${ARG_LINK})
    zt_link(${target} ${machine} ${scope} zt-base ${ARG_LINK_INSIDE} ${ARG_LINK_${MACHINE}})
    zt_place(${target} ${machine})
  endfunction()

  # Windows' headers define macros with names that others use, so what includes them is not put together with the rest.
  set(with_macros ${ARG_SOURCES})
  list(FILTER with_macros INCLUDE REGEX "^windows/|/windows/")
  set_source_files_properties(${with_macros} ${ARG_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  set(shared_objects)
  if(ARG_SOURCES)
    list(GET machines 0 any_machine)
    zt_objects(${name}-objects ${any_machine} ${ARG_SOURCES})
    set(shared_objects $<TARGET_OBJECTS:${name}-objects>)
  endif()

  foreach(machine IN LISTS machines)
    string(TOUPPER ${machine} MACHINE)
    set(objects ${shared_objects})
    if(ARG_${MACHINE})
      zt_objects(${name}-objects.${machine} ${machine} ${ARG_${MACHINE}})
      zt_link(${name}-objects.${machine} ${machine} PRIVATE ${ARG_LINK_${MACHINE}})
      list(APPEND objects $<TARGET_OBJECTS:${name}-objects.${machine}>)
    endif()

    if(ARG_STATIC)
      zt_linked(${name} STATIC PRIVATE)
    else()
      zt_linked(${name} SHARED PRIVATE)
      set_target_properties(${name}.${machine} PROPERTIES PREFIX "" DEFINE_SYMBOL "${ARG_MACRO}_EXPORTS")
      zt_linked(${name}-parts STATIC PUBLIC EXCLUDE_FROM_ALL)
      target_include_directories(${name}-parts.${machine} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    set_target_properties(${name}.${machine} PROPERTIES OUTPUT_NAME ${ARG_OUTPUT_NAME})
    if(NOT ARG_STATIC)
      zt_version_resource(${name}.${machine} ${ARG_DESCRIPTION})
    endif()
  endforeach()
  if(ARG_MACRO)
    list(GET machines 0 any_machine)
    string(TOLOWER ${ARG_MACRO} header)
    generate_export_header(${name}.${any_machine} BASE_NAME ${ARG_MACRO} EXPORT_FILE_NAME ${generated}/zt/${header}_export.h)
  endif()
endfunction()

# zt_program(NAME [DESCRIPTION TEXT] [MACHINES ...] SOURCES ... [REAL ...] [SIMULATED ...] [LINK ...]): a program for each machine. On
# Windows one with a DESCRIPTION tells it to who looks at the file.
function(zt_program name)
  cmake_parse_arguments(ARG "" "DESCRIPTION" "MACHINES;SOURCES;REAL;SIMULATED;LINK" ${ARGN})
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zt_program(${name}): ${ARG_UNPARSED_ARGUMENTS} belongs to no keyword")
  endif()
  zt_machines(machines ${ARG_MACHINES})
  foreach(machine IN LISTS machines)
    string(TOUPPER ${machine} MACHINE)
    set(target ${name}.${machine})
    add_executable(${target} ${ARG_SOURCES} ${ARG_${MACHINE}})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name})
    target_link_libraries(${target} PRIVATE zt_options)
    zt_link(${target} ${machine} PRIVATE ${ARG_LINK} zt-base)
    zt_place(${target} ${machine})
    if(ARG_DESCRIPTION)
      zt_version_resource(${target} ${ARG_DESCRIPTION})
    endif()
  endforeach()
endfunction()

# The DLLs that all modules share lie beside them.
if(MINGW)
  foreach(machine IN LISTS ZT_MACHINES)
    zt_machine_folder(folder ${machine})
    file(MAKE_DIRECTORY ${folder})
    file(COPY ${ZT_RUNTIME_DLLS} DESTINATION ${folder})
  endforeach()
endif()
