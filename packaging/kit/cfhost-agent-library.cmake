set(CFHOST_KIT_FOLDER ${CMAKE_CURRENT_LIST_DIR})

# cfhost_add_agent_library(NAME SOURCE...)
#
# Makes the target NAME, a library with the file name that the host looks for. It exports only Api, and
# has the C++ runtime linked in: the host has a runtime of its own, and the two must not mix. Link it with
# cfhost::agent_interface or cfhost::messages.
function(cfhost_add_agent_library name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES PREFIX "" OUTPUT_NAME cfagent CXX_VISIBILITY_PRESET default)
  if(WIN32)
    target_sources(${name} PRIVATE ${CFHOST_KIT_FOLDER}/cfagent.def)
    target_link_options(${name} PRIVATE -static)
  else()
    set(exports ${CFHOST_KIT_FOLDER}/cfagent.map)
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${exports})
    # Other exports could become unique in the process, and then the library couldn't be unloaded.
    target_link_options(${name} PRIVATE
      -static-libstdc++ -static-libgcc LINKER:--version-script=${exports} LINKER:-z,defs)
  endif()
endfunction()
