# An overlay port of the tree that it lies in: vcpkg install zt-telemetry --overlay-ports=packaging/vcpkg-port
# Not exercised: nobody has run it yet. Like the preset windows-msvc it wants the triplet x64-windows-static-sqlite
# (--overlay-triplets=cmake/triplets), where SQLite is static: sdk/sqlite makes a DLL of it, and the versions of vcpkg.json.
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)

vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS -DZT_BUILD_TESTS=OFF -DZT_WARNINGS_AS_ERRORS=OFF)
vcpkg_cmake_install()
vcpkg_copy_pdbs()
vcpkg_cmake_config_fixup(PACKAGE_NAME zt-telemetry CONFIG_PATH lib/cmake/zt-telemetry)
vcpkg_copy_tools(TOOL_NAMES zt-telemetry-host AUTO_CLEAN)
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")

# Under what licence the project is handed on is its owner's decision, which is not made yet.
set(VCPKG_POLICY_SKIP_COPYRIGHT_CHECK enabled)
