# Linux on ARM64 with Debian's cross compiler, over Debian's libraries for it, which scripts/setup unpacked. What is built is
# run nowhere here.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

include(${CMAKE_CURRENT_LIST_DIR}/../CacheFolder.cmake)
set(libraries ${cache}/arm64-libraries/usr)
set(ZT_HEADERS_DIR ${libraries})
set(ZT_SODIUM_INCLUDE_DIR ${libraries}/include CACHE PATH "Where sodium.h lies")
set(ZT_SODIUM_LIBRARY ${libraries}/lib/aarch64-linux-gnu/libsodium.so CACHE FILEPATH "The library that is linked")
# What the libraries themselves need.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-Wl,-rpath-link,${libraries}/lib/aarch64-linux-gnu:${cache}/arm64-libraries/lib/aarch64-linux-gnu")
endforeach()

set(CMAKE_FIND_ROOT_PATH ${cache}/arm64-libraries /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
