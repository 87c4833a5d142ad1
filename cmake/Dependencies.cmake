# Every library that the project uses, as an imported target. Debian's own on Linux; for mingw those that
# scripts/setup made in its cache folder; vcpkg's with MSVC.
include(${CMAKE_CURRENT_LIST_DIR}/CacheFolder.cmake)
if(MINGW)
  set(ZT_CACHE_DIR ${cache} CACHE PATH "Where scripts/setup keeps the cross-built libraries")
  set(ZT_PROTOBUF_DIR ${ZT_CACHE_DIR}/mingw-protobuf-3.21.12)
  set(ZT_SQLITE_DIR ${ZT_CACHE_DIR}/mingw-sqlite-static-3.40.1-3)
  set(ZT_SODIUM_DIR ${ZT_CACHE_DIR}/mingw-sodium-static-1.0.18-2)
  set(ZT_HEADERS_DIR ${ZT_CACHE_DIR}/mingw-headers-2)
  list(APPEND CMAKE_FIND_ROOT_PATH ${ZT_PROTOBUF_DIR} ${ZT_HEADERS_DIR})
  list(APPEND CMAKE_PREFIX_PATH ${ZT_PROTOBUF_DIR} ${ZT_HEADERS_DIR})
  # Said outright: a build folder keeps what it once found, also a library that is no longer the one to use.
  set(SQLite3_INCLUDE_DIR ${ZT_SQLITE_DIR}/include CACHE PATH "Where sqlite3.h lies" FORCE)
  set(SQLite3_LIBRARY ${ZT_SQLITE_DIR}/lib/libsqlite3.a CACHE FILEPATH "The library that is linked" FORCE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_SOURCE_DIR}/scripts/wine)
  file(GLOB ZT_RUNTIME_DLLS ${ZT_CACHE_DIR}/mingw-runtime/bin/*.dll ${ZT_PROTOBUF_DIR}/bin/libprotobuf.dll)
  if(NOT ZT_RUNTIME_DLLS)
    message(FATAL_ERROR "No cross-built libraries in ${ZT_CACHE_DIR}: run scripts/setup windows first")
  endif()
else()
  set(ZT_CACHE_DIR ${cache})
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

# protobuf: the host's records. The compiler of the same version runs on the building machine.
if(MINGW)
  find_package(protobuf CONFIG REQUIRED)
  find_program(ZT_PROTOC NAMES protoc REQUIRED NO_CMAKE_FIND_ROOT_PATH)
elseif(MSVC)
  find_package(protobuf CONFIG REQUIRED)
  if(CMAKE_CROSSCOMPILING)
    find_program(ZT_PROTOC NAMES protoc REQUIRED)
  else()
    set(ZT_PROTOC $<TARGET_FILE:protobuf::protoc>)
  endif()
else()
  find_package(Protobuf REQUIRED)
  set(ZT_PROTOC ${Protobuf_PROTOC_EXECUTABLE})
endif()

# A header-only library that is found by one of its headers.
function(zt_header_library name header)
  if(TARGET ${name})
    return()
  endif()
  string(MAKE_C_IDENTIFIER ${name} variable)
  find_path(${variable}_INCLUDE_DIR ${header}
    PATHS ${ZT_CACHE_DIR}/plog/include PATH_SUFFIXES utf8cpp NO_CMAKE_FIND_ROOT_PATH REQUIRED
    HINTS ${ZT_HEADERS_DIR}/include)
  add_library(${name} INTERFACE IMPORTED)
  set_target_properties(${name} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${${variable}_INCLUDE_DIR})
endfunction()

zt_header_library(zt::json nlohmann/json.hpp)
zt_header_library(zt::cli11 CLI/CLI.hpp)
zt_header_library(zt::utf8 utf8.h)
zt_header_library(zt::toml toml++/toml.h)
zt_header_library(zt::plog plog/Log.h)
# How plog keeps a message shows in the layout of its records, so plugin and host must choose alike. The default is what
# plog chooses by itself: wide texts on Windows, UTF-8 elsewhere, where it has nothing else.
if(WIN32)
  option(ZT_PLOG_CHAR_IS_UTF8 "The host keeps plog's messages as UTF-8, not as wide texts" OFF)
else()
  set(ZT_PLOG_CHAR_IS_UTF8 ON)
endif()
# Each module has a logger of its own.
set_target_properties(zt::plog PROPERTIES
  INTERFACE_COMPILE_DEFINITIONS "PLOG_LOCAL;PLOG_CHAR_IS_UTF8=$<BOOL:${ZT_PLOG_CHAR_IS_UTF8}>")

# SQLite: on Windows a static library, which zt-sqlite makes a DLL of; elsewhere the system's own.
if(MSVC)
  find_package(unofficial-sqlite3 CONFIG REQUIRED)
  add_library(zt::sqlite ALIAS unofficial::sqlite3::sqlite3)
else()
  find_package(SQLite3 REQUIRED)
  add_library(zt::sqlite ALIAS SQLite::SQLite3)
endif()

# libsodium: keyed hashes, of the host program only.
if(MSVC)
  find_package(unofficial-sodium CONFIG REQUIRED)
  add_library(zt::sodium ALIAS unofficial-sodium::sodium)
else()
  find_path(ZT_SODIUM_INCLUDE_DIR sodium.h HINTS ${ZT_SODIUM_DIR}/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  find_library(ZT_SODIUM_LIBRARY sodium HINTS ${ZT_SODIUM_DIR}/lib NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  add_library(zt::sodium UNKNOWN IMPORTED)
  set_target_properties(zt::sodium PROPERTIES IMPORTED_LOCATION ${ZT_SODIUM_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${ZT_SODIUM_INCLUDE_DIR})
  if(MINGW)
    set_target_properties(zt::sodium PROPERTIES INTERFACE_COMPILE_DEFINITIONS SODIUM_STATIC)
  endif()
endif()

if(ZT_BUILD_TESTS)
  if(MSVC)
    find_package(GTest CONFIG REQUIRED)
  else()
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  endif()
endif()
if(ZT_BUILD_BENCH)
  find_package(benchmark REQUIRED)
endif()
