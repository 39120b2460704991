# Where an installed tree has what. The host gets a folder of its own: the agent library lies beside
# it, and nothing else must.

if(WIN32)
  set(CFHOST_PROGRAM_DIR ${CMAKE_INSTALL_BINDIR})
else()
  # For programs that other programs start. The companion programs look for the host here.
  set(CFHOST_PROGRAM_DIR libexec/cfhost)
endif()

# Compresses and installs the manual pages of packaging/man.
function(install_manual_pages)
  find_program(GZIP gzip REQUIRED)
  file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/packaging/man/*.1)
  foreach(page IN LISTS pages)
    get_filename_component(name ${page} NAME)
    set(compressed ${CMAKE_CURRENT_BINARY_DIR}/man/${name}.gz)
    # -n leaves out the time stamp: two builds give the same bytes.
    add_custom_command(OUTPUT ${compressed}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/man
      COMMAND ${GZIP} -9 -n -c ${page} > ${compressed}
      DEPENDS ${page})
    list(APPEND all_compressed ${compressed})
  endforeach()
  add_custom_target(manual_pages ALL DEPENDS ${all_compressed})
  install(FILES ${all_compressed} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT host)
endfunction()
