# What `cmake --install` puts where. Of the machines of the build it is the first: the real one where there is one.
#   bin/                       the programs and, on Windows, every DLL
#   lib/zt-telemetry/          elsewhere the libraries and the plugin
#   lib/                       on Windows the import libraries
#   include/zt-telemetry/      the headers
#   lib/cmake/zt-telemetry/    for find_package(zt-telemetry)
#   lib/pkgconfig/             elsewhere than on Windows, for pkg-config
#   share/zt-telemetry/        the contract, profiles of machines
#   share/doc/zt-telemetry/    the documents
# Components: runtime is what a machine needs to collect, development what is needed to build against it.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

list(GET ZT_MACHINES 0 machine)
set(package zt-telemetry)
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/${package})
set(cmake_files ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
set(data ${CMAKE_INSTALL_DATADIR}/${package})
set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})

# The files of one machine find each other in one folder; on Windows it is that of the program.
set(libraries ${CMAKE_INSTALL_LIBDIR}/${package})
if(WIN32)
  set(libraries ${CMAKE_INSTALL_BINDIR})
endif()

# A library's headers, also those that are made while it is built.
function(zt_install_headers folder)
  install(DIRECTORY ${folder}/ DESTINATION ${headers} COMPONENT development FILES_MATCHING PATTERN *.h)
endfunction()

# zt_install_library(NAME EXPORTED): a library that others link, as zt-telemetry::EXPORTED.
function(zt_install_library name exported)
  set(target ${name}.${machine})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${exported} INSTALL_RPATH $ORIGIN)
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${headers}>)
  install(TARGETS ${target} EXPORT ${package}
    RUNTIME DESTINATION ${libraries} COMPONENT runtime
    LIBRARY DESTINATION ${libraries} COMPONENT runtime
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endfunction()

foreach(library battery-info npu-info private-bios-wmi smbios storage-info telemetry-commons telemetry-storage wmi-client)
  set(name zt-${library})
  if(library STREQUAL wmi-client)
    set(name zt-shared-wmi-client)
  endif()
  zt_install_library(${name} sdk-${library})
  zt_install_headers(${PROJECT_SOURCE_DIR}/sdk/${library}/include)
  zt_install_headers(${PROJECT_BINARY_DIR}/sdk/${library}/generated)
endforeach()
zt_install_library(zt-telemetry-data-contracts contracts)
zt_install_headers(${PROJECT_BINARY_DIR}/contracts/generated)
file(GLOB contract_files contracts/*.proto)
install(FILES ${contract_files} DESTINATION ${data}/contracts COMPONENT development)
if(machine STREQUAL simulated)
  zt_install_library(zt-simulation simulation)
  set_target_properties(nvml.simulated amdadlx64.simulated PROPERTIES INSTALL_RPATH $ORIGIN)
  install(TARGETS nvml.simulated amdadlx64.simulated DESTINATION ${libraries} COMPONENT runtime)
endif()
install(DIRECTORY simulation/profiles/ DESTINATION ${data}/profiles COMPONENT development)

# The plugin is loaded by its file, which the package's configuration names. Only who brings samplers of their own links
# it, for the base class of samplers; its headers lie apart, since their names are short.
set_target_properties(zt-collector.${machine} PROPERTIES INSTALL_RPATH $ORIGIN)
if(WIN32)
  install(TARGETS zt-sqlite.${machine} RUNTIME DESTINATION ${libraries} COMPONENT runtime)
endif()
install(TARGETS zt-collector.${machine}
  RUNTIME DESTINATION ${libraries} COMPONENT runtime
  LIBRARY DESTINATION ${libraries} COMPONENT runtime
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
zt_install_headers(${PROJECT_BINARY_DIR}/src/generated)
foreach(header IN ITEMS collector/performance_samples.h messages/perf_messages.h samplers/battery_info_msg.h
    samplers/device_state_info_msg.h samplers/gpu/gpu_info_msg.h samplers/memory_info_msg.h samplers/npu_msg.h
    samplers/operating_system_info_msg.h samplers/storage_info_msg.h types/graphic_card_info.h types/wmi_process_info.h)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES src/${header} DESTINATION ${headers}/collector/${folder} COMPONENT development)
endforeach()

# Elsewhere than on Windows the program lies beside its libraries, where it looks for the plugin, and bin/ has its name.
set_target_properties(zt-telemetry-host.${machine} PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS zt-telemetry-host.${machine} DESTINATION ${libraries} COMPONENT runtime)
if(NOT WIN32)
  set(link ${CMAKE_INSTALL_BINDIR}/zt-telemetry-host)
  file(RELATIVE_PATH program /${CMAKE_INSTALL_BINDIR} /${libraries}/zt-telemetry-host)
  install(CODE "
    file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    file(CREATE_LINK ${program} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${link}\" SYMBOLIC)
    message(STATUS \"Installing: \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${link}\")" COMPONENT runtime)
endif()
# What mingw's builds need of their compiler.
if(MINGW)
  install(FILES ${ZT_RUNTIME_DLLS} DESTINATION ${libraries} COMPONENT runtime)
endif()

install(FILES README.md ARCHITECTURE.md DESTINATION ${documents} COMPONENT runtime)
install(DIRECTORY docs/ DESTINATION ${documents}/docs COMPONENT runtime)
install(DIRECTORY examples DESTINATION ${data} COMPONENT development)

# find_package(zt-telemetry)
set(plugin ${libraries}/$<TARGET_FILE_NAME:zt-collector.${machine}>)
set(host ${libraries}/$<TARGET_FILE_NAME:zt-telemetry-host.${machine}>)
set(import_library ${CMAKE_INSTALL_LIBDIR}/$<TARGET_LINKER_FILE_NAME:zt-collector.${machine}>) # on Windows
set(utf8_messages 0)
if(ZT_PLOG_CHAR_IS_UTF8)
  set(utf8_messages 1)
endif()
configure_package_config_file(cmake/${package}-config.cmake.in ${PROJECT_BINARY_DIR}/${package}-config.cmake.in
  INSTALL_DESTINATION ${cmake_files} PATH_VARS plugin host data headers import_library)
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/package/${package}-config.cmake
  INPUT ${PROJECT_BINARY_DIR}/${package}-config.cmake.in)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/${package}-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/package/${package}-config.cmake
  ${PROJECT_BINARY_DIR}/package/${package}-config-version.cmake DESTINATION ${cmake_files} COMPONENT development)
install(EXPORT ${package} FILE ${package}-targets.cmake NAMESPACE ${package}:: DESTINATION ${cmake_files}
  COMPONENT development)

# pkg-config, whose files find everything from where they lie themselves.
if(NOT WIN32)
  file(RELATIVE_PATH prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" prefix ${prefix})
  foreach(name IN ITEMS ${package} ${package}-collector)
    configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc.in @ONLY)
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/package/${name}.pc INPUT ${PROJECT_BINARY_DIR}/${name}.pc.in)
    install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
      COMPONENT development)
  endforeach()
endif()
