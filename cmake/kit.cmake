# The kit for authors of client libraries: headers, one static library, and files for CMake and
# pkg-config. docs/library.md says how to use it.

include(CMakePackageConfigHelpers)
set(kit_folder ${CMAKE_INSTALL_LIBDIR}/cmake/cfhost)
# Installed only by name: people who use the host don't need it.
set(in_kit COMPONENT sdk EXCLUDE_FROM_ALL)

# Sets a variable to the full paths of a target's sources.
function(full_sources target result)
  get_target_property(sources ${target} SOURCES)
  get_target_property(folder ${target} SOURCE_DIR)
  list(TRANSFORM sources PREPEND ${folder}/)
  set(${result} ${sources} PARENT_SCOPE)
endfunction()

# Everything that the messages need, in one archive. Built without link-time optimisation, whose
# archives suit only one version of one compiler.
full_sources(messages message_sources)
full_sources(memory memory_sources)
full_sources(library_side library_side_sources)
string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
set(system_folder ${PROJECT_SOURCE_DIR}/platform/${system})
add_library(kit_messages STATIC
  ${message_sources} ${memory_sources} ${library_side_sources}
  ${system_folder}/library_threads.cpp ${system_folder}/wiping.cpp)
target_compile_features(kit_messages PRIVATE cxx_std_20)
set_target_properties(kit_messages PROPERTIES
  OUTPUT_NAME cfhost_messages EXPORT_NAME messages INTERPROCEDURAL_OPTIMIZATION OFF)
if(WIN32)
  # Stack checks would need a library of the tool chain that authors don't link.
  target_compile_options(kit_messages PRIVATE -fno-stack-protector -U_FORTIFY_SOURCE)
endif()
target_include_directories(kit_messages PRIVATE ${PROJECT_SOURCE_DIR})

add_library(agent_interface INTERFACE)
target_compile_features(agent_interface INTERFACE cxx_std_17)
target_include_directories(agent_interface INTERFACE
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/cfhost>)
target_link_libraries(kit_messages PUBLIC agent_interface)

set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/cfhost)
install(TARGETS agent_interface kit_messages EXPORT cfhost
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${in_kit})
install(EXPORT cfhost NAMESPACE cfhost:: FILE cfhost-targets.cmake DESTINATION ${kit_folder} ${in_kit})
install(DIRECTORY messages/ DESTINATION ${header_folder}/messages ${in_kit}
        FILES_MATCHING PATTERN "*.h" PATTERN loader EXCLUDE)
install(FILES platform/wide.h DESTINATION ${header_folder}/platform ${in_kit})

configure_package_config_file(packaging/kit/cfhost-config.cmake.in kit/cfhost-config.cmake
  INSTALL_DESTINATION ${kit_folder} NO_CHECK_REQUIRED_COMPONENTS_MACRO NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kit/cfhost-config-version.cmake
  COMPATIBILITY SameMajorVersion)
if(WIN32)
  set(kit_exports packaging/kit/cfagent.def)
else()
  set(kit_exports agent/cfagent.map)
endif()
get_filename_component(EXPORTS_SUFFIX ${kit_exports} LAST_EXT)
string(SUBSTRING ${EXPORTS_SUFFIX} 1 -1 EXPORTS_SUFFIX)
install(FILES
  ${CMAKE_BINARY_DIR}/kit/cfhost-config.cmake ${CMAKE_BINARY_DIR}/kit/cfhost-config-version.cmake
  packaging/kit/cfhost-agent-library.cmake ${kit_exports}
  DESTINATION ${kit_folder} ${in_kit})

set(pkgconfig_folder ${CMAKE_INSTALL_DATADIR}/pkgconfig)
file(RELATIVE_PATH PREFIX_FROM_PC /prefix/${pkgconfig_folder} /prefix)
configure_file(packaging/kit/cfhost.pc.in kit/cfhost.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kit/cfhost.pc DESTINATION ${pkgconfig_folder} ${in_kit})
install(DIRECTORY examples/agent DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/cfhost-dev/examples
        ${in_kit})
