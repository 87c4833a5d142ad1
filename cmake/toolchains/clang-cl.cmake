# Windows x64 in MSVC's ABI with clang-cl and lld-link, on any machine that has LLVM 19 or newer.
#
# Microsoft's headers and import libraries come from a folder that ZT_WINSYSROOT names (environment or cache): in it lie
# "VC/Tools/MSVC/<version>" and "Windows Kits/10" as Visual Studio installs them. The newest version there is taken.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(ZT_WINSYSROOT "$ENV{ZT_WINSYSROOT}" CACHE PATH "Folder with \"VC\" and \"Windows Kits\" of a Visual Studio installation")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZT_WINSYSROOT ZT_WINDOWS_NAMES)
foreach(folder "VC/Tools/MSVC" "Windows Kits/10/Include" "Windows Kits/10/Lib")
  if(NOT IS_DIRECTORY "${ZT_WINSYSROOT}/${folder}")
    message(FATAL_ERROR "ZT_WINSYSROOT (${ZT_WINSYSROOT}) has no folder \"${folder}\"")
  endif()
endforeach()

foreach(tool "CXX_COMPILER clang-cl" "C_COMPILER clang-cl" "LINKER lld-link" "RC_COMPILER llvm-rc" "AR llvm-lib")
  separate_arguments(tool)
  list(GET tool 0 variable)
  list(GET tool 1 name)
  find_program(CMAKE_${variable} NAMES ${name}-22 ${name}-21 ${name}-20 ${name}-19 ${name} REQUIRED)
endforeach()
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)

set(compile "/winsysroot \"${ZT_WINSYSROOT}\"")
set(link "/manifest:no \"/winsysroot:${ZT_WINSYSROOT}\"")  # manifests would need Microsoft's own tool

# Microsoft's headers and libraries call each other by names in whatever case.
if(NOT EXISTS "${ZT_WINSYSROOT}/vc/tools/msvc")
  if(NOT ZT_WINDOWS_NAMES)
    set(ZT_WINDOWS_NAMES ${CMAKE_BINARY_DIR}/windows-names)
    include(${CMAKE_CURRENT_LIST_DIR}/../WindowsNames.cmake)
    zt_list_windows_names("${ZT_WINSYSROOT}" ${ZT_WINDOWS_NAMES})
  endif()
  string(APPEND compile " -Xclang -ivfsoverlay -Xclang \"${ZT_WINDOWS_NAMES}/names.yaml\"")
  string(APPEND link " \"/vfsoverlay:${ZT_WINDOWS_NAMES}/names.yaml\" \"/libpath:${ZT_WINDOWS_NAMES}\"")
endif()

set(CMAKE_C_FLAGS_INIT "${compile}")
set(CMAKE_CXX_FLAGS_INIT "${compile}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "${link}")
endforeach()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
if(NOT CMAKE_HOST_WIN32)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine)
endif()
