# Windows x64 with clang, over the headers and libraries of mingw-w64's GCC with posix threads, on a Linux machine. The
# code is of the same ABI as that of mingw-w64.cmake: the libraries that are built with that one are linked.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Older ones do not find the C++ headers where Debian has them.
find_program(CMAKE_C_COMPILER NAMES clang-19 clang-20 clang-21 clang-22 REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES clang++-19 clang++-20 clang++-21 clang++-22 REQUIRED)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# GCC's library keeps what belongs to a thread in its own way.
set(CMAKE_C_FLAGS_INIT "-femulated-tls")
set(CMAKE_CXX_FLAGS_INIT "-femulated-tls")
# The threads of GCC with posix threads are linked without being named. The linker is clang's as well: GNU's cannot resolve
# clang's references to type information that several objects have.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-pthread -fuse-ld=lld")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
