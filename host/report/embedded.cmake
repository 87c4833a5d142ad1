# The report's page, with the chart library of the package, as a source of the host program.
find_program(ZT_PYTHON NAMES python3 python REQUIRED)
set(page ${CMAKE_CURRENT_LIST_DIR}/page)
set(charts ${page}/node_modules/uplot/dist/uPlot.min.css ${page}/node_modules/uplot/dist/uPlot.iife.min.js)
foreach(file IN LISTS charts)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "The report's chart library is missing (${file}): run scripts/setup native, or npm ci in ${page}")
  endif()
endforeach()

set(parts style.css data.js times.js dom.js gaps.js series.js plots.js rules.js charts.js downloads.js tables.js summary.js
  page.js)
list(TRANSFORM parts PREPEND ${page}/)
set(made ${CMAKE_CURRENT_BINARY_DIR}/report)
file(MAKE_DIRECTORY ${made})
add_custom_command(
  OUTPUT ${made}/page.html
  COMMAND ${ZT_PYTHON} -B ${page}/assemble.py --output ${made}/page.html ${page}/index.html ${charts} ${parts}
  DEPENDS ${page}/assemble.py ${page}/index.html ${charts} ${parts}
  COMMENT "Putting the report's page together"
  VERBATIM)

set(embedded ${made}/embedded_page.cpp)
add_custom_command(
  OUTPUT ${embedded}
  COMMAND ${CMAKE_COMMAND} -D BYTES=${made}/page.html -D SOURCE=${embedded} -D HEADER=host/report/embedded.h
          -D NAMESPACE=zt::telemetry::host -D OPERATION=EmbeddedPage -P ${PROJECT_SOURCE_DIR}/cmake/WriteBytes.cmake
  DEPENDS ${made}/page.html ${PROJECT_SOURCE_DIR}/cmake/WriteBytes.cmake
  COMMENT "Embedding the report's page"
  VERBATIM)
set(ZT_EMBEDDED_REPORT ${embedded})
