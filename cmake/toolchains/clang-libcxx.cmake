# The machine itself with clang and its own C++ library, libc++. protobuf has classes of that library in it, so it is one of
# its own, which scripts/setup made.
find_program(CMAKE_C_COMPILER NAMES clang-19 REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES clang++-19 REQUIRED)
set(CMAKE_CXX_FLAGS_INIT "-stdlib=libc++")

if(DEFINED ENV{ZT_CACHE_DIR})
  set(cache $ENV{ZT_CACHE_DIR})
elseif(DEFINED ENV{XDG_CACHE_HOME})
  set(cache $ENV{XDG_CACHE_HOME}/zt-telemetry)
else()
  set(cache $ENV{HOME}/.cache/zt-telemetry)
endif()
list(PREPEND CMAKE_PREFIX_PATH ${cache}/libcxx-protobuf-3.21.12)
