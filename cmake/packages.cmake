# Packages of what gets installed: cpack -G DEB, or for Windows cpack -G ZIP, in a build folder.

if(NOT WIN32)
  install_manual_pages()
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/cfhost COMPONENT host
          FILES_MATCHING PATTERN "*.md")
  # Where cfsetup install --system registers the host. Removing the package removes what is empty.
  foreach(folder /etc/chromium /etc/opt/chrome /etc/opt/edge /etc/opt/vivaldi /usr/lib/mozilla)
    install(DIRECTORY DESTINATION ${folder}/native-messaging-hosts COMPONENT host
            EXCLUDE_FROM_ALL)
  endforeach()
endif()

string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${system}-${CMAKE_SYSTEM_PROCESSOR})
# Each package has its own first line.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "The coffer developers <coffer@orvanta.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/same_times.cmake)

# Two packages: the development agent must never come along with the host.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL host agent)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The umask of who builds must not show in the folders.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_HOST_PACKAGE_NAME cfhost)
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION web)
set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS libxcb1)
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/prerm)
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENT_HOST_DESCRIPTION
"Native-messaging host of the coffer password manager
The browser starts it for the extension of the password manager; it carries
the extension's requests to the password-store agent and the agent's
notifications back.
.
With cfsetup, which registers it with browsers and finds out why it doesn't
start, cfext, which plays the extension, and cfdebug, which shows what the
host reports.")

set(CPACK_DEBIAN_AGENT_PACKAGE_NAME cfhost-dev-agent)
set(CPACK_DEBIAN_AGENT_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_AGENT_PACKAGE_DEPENDS "cfhost (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_AGENT_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_AGENT_DESCRIPTION
"Development agent for cfhost
Stands in for the password-store agent while somebody works on the extension
or the host. It keeps its coffer in memory and protects nothing.")
include(CPack)
