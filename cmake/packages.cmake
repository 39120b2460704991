# The archive of what gets installed: cpack -G ZIP in a build folder.

string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${system}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
