# zt_list_windows_names(ROOT FOLDER): lets LLVM's tools find every file of Microsoft's include and library folders below
# ROOT whatever the case of the name that is asked for. FOLDER receives names.yaml, an overlay for the compiler and for
# the libraries that objects name, and links to the import libraries with names in lower case, since the linker does not
# look up those of its command line in the overlay.
function(zt_list_windows_names root folder)
  file(GLOB_RECURSE headers LIST_DIRECTORIES false "${root}/VC/Tools/MSVC/*/include/*" "${root}/Windows Kits/10/Include/*")
  file(GLOB libraries LIST_DIRECTORIES false "${root}/VC/Tools/MSVC/*/lib/x64/*" "${root}/Windows Kits/10/Lib/*/*/x64/*")
  set(paths ${headers} ${libraries})
  list(SORT paths) # the files of a folder one after another
  set(folder_before)
  set(text)
  foreach(path IN LISTS paths)
    get_filename_component(here "${path}" DIRECTORY)
    get_filename_component(name "${path}" NAME)
    if(NOT here STREQUAL folder_before)
      if(folder_before)
        string(APPEND text "]},\n")
      endif()
      string(APPEND text "{\"type\": \"directory\", \"name\": \"${here}\", \"contents\": [\n")
      set(folder_before "${here}")
    endif()
    string(APPEND text "{\"type\": \"file\", \"name\": \"${name}\", \"external-contents\": \"${path}\"},\n")
  endforeach()
  file(WRITE ${folder}/names.yaml
    "{\"version\": 0, \"case-sensitive\": \"false\", \"overlay-relative\": \"false\", \"roots\": [\n${text}]}]}\n")
  foreach(path IN LISTS libraries) # those of the newest version win
    get_filename_component(name "${path}" NAME)
    string(TOLOWER ${name} name)
    file(CREATE_LINK "${path}" ${folder}/${name} SYMBOLIC)
  endforeach()
endfunction()
