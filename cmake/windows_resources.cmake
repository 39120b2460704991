# Gives programs the resources that Windows looks for in them. Does nothing on other systems.

if(WIN32)
  enable_language(RC)
endif()

# Links the project's version and packaging/windows/TARGET.manifest into a program.
function(add_windows_resources target description)
  if(NOT WIN32)
    return()
  endif()
  set(program ${target})
  set(manifest ${PROJECT_SOURCE_DIR}/packaging/windows/${target}.manifest)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${resources} @ONLY)
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS ${manifest})
  target_sources(${target} PRIVATE ${resources})
endfunction()
