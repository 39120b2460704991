# Makes the programs' table of browsers, ${CMAKE_CURRENT_BINARY_DIR}/browser_table.h, from
# browsers.ini. The property CFHOST_SYSTEM_MANIFEST_FOLDERS has the folders for all users, each
# once.

set(known_keys title form user system key data programs flatpak snap policies policy_key)
set(table ${CMAKE_CURRENT_SOURCE_DIR}/browsers.ini)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${table})

function(fail_at line what)
  message(FATAL_ERROR "${table}: ${what}: ${line}")
endfunction()

# Sets the caller's NAME_KEY, and NAME_KEY_owner: the browser that the value comes from.
function(set_value name key value)
  set(owner ${name})
  set(resolved "${value}")
  if("${value}" MATCHES "^as (.+)$")
    set(owner ${CMAKE_MATCH_1})
    if(NOT DEFINED ${owner}_${key})
      fail_at("${value}" "no such browser further up")
    endif()
    set(resolved "${${owner}_${key}}")
  endif()
  set(${name}_${key} "${resolved}" PARENT_SCOPE)
  set(${name}_${key}_owner ${owner} PARENT_SCOPE)
endfunction()

set(names "")
file(STRINGS ${table} lines REGEX "^[^#]")
foreach(line IN LISTS lines)
  if(line MATCHES "^\\[(.+)\\]$")
    set(name ${CMAKE_MATCH_1})
    list(APPEND names ${name})
  elseif(line MATCHES "^([a-z_]+) = (.+)$" AND CMAKE_MATCH_1 IN_LIST known_keys)
    set(key ${CMAKE_MATCH_1})
    string(REGEX REPLACE "^[a-z_]+ = " "" value "${line}")
    set_value(${name} ${key} "${value}")
  else()
    fail_at("${line}" "neither [NAME] nor one of ${known_keys}")
  endif()
endforeach()

set(entries "")
set(folders "")
foreach(name IN LISTS names)
  foreach(key title form user system key data programs)
    if("${${name}_${key}}" STREQUAL "")
      fail_at(${name} "lacks ${key}")
    endif()
  endforeach()
  list(APPEND folders ${${name}_system})
  set(strings "")
  foreach(key user system key key_owner data programs flatpak snap policies policy_key)
    string(APPEND strings "      R\"(${${name}_${key}})\",\n")
  endforeach()
  string(APPEND entries "    {\"${name}\",\n     \"${${name}_title}\",\n     id_form::${${name}_form},\n"
                        "     {\n${strings}     }},\n")
endforeach()
list(REMOVE_DUPLICATES folders)
set_property(GLOBAL PROPERTY CFHOST_SYSTEM_MANIFEST_FOLDERS ${folders})
file(CONFIGURE OUTPUT browser_table.h @ONLY CONTENT
"// Made of tools/setup/browsers.ini.
inline constexpr browser browser_table[] = {
@entries@};
")
