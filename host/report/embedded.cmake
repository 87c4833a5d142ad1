# What the report carries with it, put into one source file of the host program: its page, with the chart library of the
# package, and what the contract says of its fields.
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

set(contracts ${PROJECT_SOURCE_DIR}/contracts)
set(protos ${contracts}/performance_samples_upload.proto ${contracts}/device_performance_storage.proto)
set(protobuf_includes
  $<JOIN:$<TARGET_PROPERTY:protobuf::libprotobuf,INTERFACE_INCLUDE_DIRECTORIES>,$<SEMICOLON>--proto_path=>)
add_custom_command(
  OUTPUT ${made}/contract.bin
  COMMAND ${ZT_PROTOC} --include_source_info --descriptor_set_out=${made}/contract.bin --proto_path=${contracts}
          --proto_path=${protobuf_includes} ${protos}
  DEPENDS ${protos} ${contracts}/contract_annotations.proto
  COMMENT "Describing the contract"
  COMMAND_EXPAND_LISTS)

set(embedded ${made}/embedded_report.cpp)
add_custom_command(
  OUTPUT ${embedded}
  COMMAND ${CMAKE_COMMAND} -DOUTPUT=${embedded} -DPAGE=${made}/page.html -DCONTRACT=${made}/contract.bin
          -P ${CMAKE_CURRENT_LIST_DIR}/embed.cmake
  DEPENDS ${made}/page.html ${made}/contract.bin ${CMAKE_CURRENT_LIST_DIR}/embed.cmake
  COMMENT "Embedding the report's page"
  VERBATIM)
set(ZT_EMBEDDED_REPORT ${embedded})
