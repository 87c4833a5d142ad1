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

# zt_link(TARGET MACHINE SCOPE LIB...): links LIB.MACHINE where a library is built once for each machine, else LIB.
function(zt_link target machine scope)
  foreach(library IN LISTS ARGN)
    if(TARGET ${library}.${machine})
      set(library ${library}.${machine})
    endif()
    target_link_libraries(${target} ${scope} ${library})
  endforeach()
endfunction()

# zt_shared_library(NAME MACRO [SOURCES ...] [WINDOWS ...] [SIMULATED ...] [LINK ...] [LINK_WINDOWS ...] [LINK_SIMULATED ...])
#
# A shared library NAME for each machine, as target NAME.MACHINE. SOURCES belong to both, WINDOWS and SIMULATED to the
# machine's own library. Public headers lie in include/ below the calling folder; MACRO_EXPORT marks what is exported,
# by the generated header zt/<macro in lower case>.h.
function(zt_shared_library name macro)
  cmake_parse_arguments(ARG "" "" "SOURCES;WINDOWS;SIMULATED;LINK;LINK_WINDOWS;LINK_SIMULATED" ${ARGN})
  string(TOLOWER ${macro} header)
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
  foreach(machine IN LISTS ZT_MACHINES)
    string(TOUPPER ${machine} MACHINE)
    set(target ${name}.${machine})
    add_library(${target} SHARED ${ARG_SOURCES} ${ARG_${MACHINE}})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} PREFIX "" DEFINE_SYMBOL ${macro}_EXPORTS)
    generate_export_header(${target} BASE_NAME ${macro} EXPORT_FILE_NAME ${generated}/zt/${header}_export.h)
    target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/include ${generated}
      PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE zt_options)
    zt_link(${target} ${machine} PUBLIC ${ARG_LINK})
    zt_link(${target} ${machine} PRIVATE ${ARG_LINK_${MACHINE}})
    zt_place(${target} ${machine})
  endforeach()
endfunction()

# zt_program(NAME MACHINE SOURCES ... LINK ...): a program of one machine, as target NAME.MACHINE.
function(zt_program name machine)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  set(target ${name}.${machine})
  add_executable(${target} ${ARG_SOURCES})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name})
  target_link_libraries(${target} PRIVATE zt_options)
  zt_link(${target} ${machine} PRIVATE ${ARG_LINK})
  zt_place(${target} ${machine})
endfunction()

# The DLLs that all modules share lie beside them.
if(MINGW)
  foreach(machine IN LISTS ZT_MACHINES)
    zt_machine_folder(folder ${machine})
    file(MAKE_DIRECTORY ${folder})
    file(COPY ${ZT_RUNTIME_DLLS} DESTINATION ${folder})
  endforeach()
endif()
