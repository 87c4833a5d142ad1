# Windows on ARM64 with clang, over the headers of mingw-w64's GCC for x64: Debian has no libraries for it, so objects are
# compiled and nothing is linked.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

find_program(CMAKE_C_COMPILER NAMES clang-19 clang-20 clang-21 clang-22 REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES clang++-19 clang++-20 clang++-21 clang++-22 REQUIRED)
set(CMAKE_C_COMPILER_TARGET aarch64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET aarch64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=include/c++ OUTPUT_VARIABLE headers
  OUTPUT_STRIP_TRAILING_WHITESPACE)
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++")
foreach(folder ${headers} ${headers}/x86_64-w64-mingw32 ${headers}/backward /usr/x86_64-w64-mingw32/include)
  string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem ${folder}")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
