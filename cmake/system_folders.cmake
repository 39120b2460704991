# The system folders that the host uses. They are fixed at build time: what it reads and where its
# diagnostics go must not depend on an environment that somebody else may set.

option(CFHOST_PRIVATE_FOLDERS
       "Read the configuration and send diagnostics below the build folder (for tests)" OFF)

if(CFHOST_PRIVATE_FOLDERS)
  set(CFHOST_SYSCONFDIR ${CMAKE_BINARY_DIR}/etc)
  set(CFHOST_RUNTIME_DIR ${CMAKE_BINARY_DIR}/run)
  # The path of the socket has to fit 108 bytes.
  string(LENGTH "${CFHOST_RUNTIME_DIR}" length)
  if(length GREATER 75)
    string(MD5 hash "${CMAKE_BINARY_DIR}")
    set(CFHOST_RUNTIME_DIR /tmp/cfhost-${hash})
  endif()
else()
  set(CFHOST_SYSCONFDIR ${CMAKE_INSTALL_FULL_SYSCONFDIR})
  # The default prefix would give /usr/local/etc, but the configuration is for the whole machine.
  if(CMAKE_INSTALL_SYSCONFDIR STREQUAL "etc" AND CMAKE_INSTALL_PREFIX STREQUAL "/usr/local")
    set(CFHOST_SYSCONFDIR /etc)
  endif()
  set(CFHOST_RUNTIME_DIR /run/user)
endif()
