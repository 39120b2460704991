# The layout of an installed tree. The host gets a folder of its own, which holds the client library
# and nothing else.

if(WIN32)
  # Everything in one folder, as usual on Windows.
  set(CMAKE_INSTALL_BINDIR .)
  set(CFHOST_PROGRAM_DIR .)
else()
  # The folder for programs that other programs start. The companion programs look for the host
  # here.
  set(CFHOST_PROGRAM_DIR libexec/cfhost)
endif()

# Compresses and installs the files that match `pattern`, for a component of the installation.
function(install_compressed pattern destination component)
  find_program(GZIP gzip REQUIRED)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/compressed/${component})
  file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${pattern})
  foreach(file IN LISTS files)
    get_filename_component(name ${file} NAME)
    set(compressed ${folder}/${name}.gz)
    # -n leaves out the time stamp: two builds give the same bytes.
    add_custom_command(OUTPUT ${compressed}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND ${GZIP} -9 -n -c ${file} > ${compressed}
      DEPENDS ${file})
    list(APPEND all_compressed ${compressed})
  endforeach()
  string(MAKE_C_IDENTIFIER "compressed ${pattern} ${component}" target)
  add_custom_target(${target} ALL DEPENDS ${all_compressed})
  install(FILES ${all_compressed} DESTINATION ${destination} COMPONENT ${component} ${ARGN})
endfunction()
