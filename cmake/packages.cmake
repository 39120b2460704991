# What a package holds beside the programs, and how the Debian packages are made; scripts/package uses it.

set(CFHOST_EXTENSION_IDS "" CACHE STRING
    "Extensions that the Debian package registers the host for when it is installed, separated by ;")

set(doc ${CMAKE_INSTALL_DATADIR}/doc)
if(WIN32)
  # What the reader of the archive needs is at its root.
  install(FILES packaging/windows/README.txt COMPONENT host DESTINATION .)
  install(FILES LICENSE COMPONENT host DESTINATION . RENAME LICENSE.txt)
  install(DIRECTORY docs/ COMPONENT host DESTINATION docs FILES_MATCHING PATTERN "*.md")
else()
  install_compressed(packaging/man/*.1 ${CMAKE_INSTALL_MANDIR}/man1 host)
  install(DIRECTORY docs/ DESTINATION ${doc}/cfhost COMPONENT host FILES_MATCHING PATTERN "*.md")
  install(FILES packaging/completions/cfhost.bash COMPONENT host
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME cfsetup)
  foreach(program cfext cfdebug)
    install(FILES packaging/completions/cfhost.bash COMPONENT host
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program})
  endforeach()
  install(FILES packaging/debian/copyright DESTINATION ${doc}/cfhost COMPONENT host)
  install(FILES packaging/debian/copyright DESTINATION ${doc}/cfhost-dev-agent COMPONENT agent
          EXCLUDE_FROM_ALL)
  install(FILES packaging/debian/copyright DESTINATION ${doc}/cfhost-dev COMPONENT sdk EXCLUDE_FROM_ALL)
  install_compressed(packaging/debian/changelog ${doc}/cfhost host)
  install_compressed(packaging/debian/changelog ${doc}/cfhost-dev-agent agent EXCLUDE_FROM_ALL)
  install_compressed(packaging/debian/changelog ${doc}/cfhost-dev sdk EXCLUDE_FROM_ALL)
  string(REPLACE ";" "\n" ids "${CFHOST_EXTENSION_IDS}")
  file(CONFIGURE OUTPUT extension.ids CONTENT "${ids}\n")
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/extension.ids COMPONENT host
          DESTINATION ${CMAKE_INSTALL_DATADIR}/cfhost)
  # For the extensions that the administrator adds.
  install(DIRECTORY DESTINATION /etc/Orvanta/cfsetup.d COMPONENT host EXCLUDE_FROM_ALL)
endif()

# Each package's description has a first line of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "The coffer developers <coffer@orvanta.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/same_bytes.cmake)

# The development agent must never be installed along with the host, and few people need the kit.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL host agent sdk)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_HOST_PACKAGE_NAME cfhost)
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION web)
set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/packaging/debian/postinst
    ${PROJECT_SOURCE_DIR}/packaging/debian/prerm
    ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENT_HOST_DESCRIPTION
"Native-messaging host of the coffer password manager
The browser starts it for the password manager's extension. It passes the
extension's requests to the password-store agent, and the agent's
notifications back to the extension.
.
The package includes cfsetup, which registers the host with browsers and finds
out why one doesn't start it; cfext, which plays the extension; cfdebug, which
shows the host's diagnostics; cftap, which records what browser and host say to
each other; and cfcheck, which examines the client library.")

set(CPACK_DEBIAN_AGENT_PACKAGE_NAME cfhost-dev-agent)
set(CPACK_DEBIAN_AGENT_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_AGENT_PACKAGE_DEPENDS "cfhost (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_AGENT_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_AGENT_DESCRIPTION
"Development agent for cfhost
This client library stands in for the real one while somebody works on the
extension or the host. It keeps its coffer in memory and protects nothing.")

set(CPACK_DEBIAN_SDK_PACKAGE_NAME cfhost-dev)
set(CPACK_DEBIAN_SDK_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_SDK_PACKAGE_SUGGESTS "cfhost, cmake | pkg-config")
set(CPACK_COMPONENT_SDK_DESCRIPTION
"Kit for writing client libraries for cfhost
The headers of the interface between the host and the library that it loads,
a static library with the code of messages, bags and settings, files for CMake
and pkg-config, and an example.")
if(CMAKE_CROSSCOMPILING AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  # What finds dependencies out knows the libraries of its own architecture. The programs need the C library
  # alone, of the version that they are linked with at least.
  execute_process(COMMAND dpkg-query -W -f "\${Version}" libc6-arm64-cross OUTPUT_VARIABLE libc_version ERROR_QUIET)
  string(REGEX MATCH "^[0-9.]+" libc_version "${libc_version}")
  foreach(component HOST AGENT)
    set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS OFF)
    list(APPEND CPACK_DEBIAN_${component}_PACKAGE_DEPENDS "libc6 (>= ${libc_version})")
    list(JOIN CPACK_DEBIAN_${component}_PACKAGE_DEPENDS ", " CPACK_DEBIAN_${component}_PACKAGE_DEPENDS)
  endforeach()
endif()
include(CPack)
