# Writes the bundle's Info.plist from resources/macos/Info.plist.in. The same
# function serves the Apple build and, in script mode, the tests on any system:
#   cmake -DOUTPUT=<file> -DVERSION=<x.y.z> -DBUILD=<n> -DMINIMUM_SYSTEM=<13.0>
#         -DUPDATE_URL=<https://...> [-DEXECUTABLE=<name>] -P cmake/InfoPlist.cmake
# The localisations are the languages whose string tables ship in resources/l10n.

set(TOLVAR_INFO_PLIST_ROOT ${CMAKE_CURRENT_LIST_DIR}/..)

function(tolvar_plist_text out text)
  string(REPLACE "&" "&amp;" text "${text}")
  string(REPLACE "<" "&lt;" text "${text}")
  string(REPLACE ">" "&gt;" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# A build without a number is a development build: 0, which no release is below.
function(tolvar_info_plist output version build minimum_system update_url executable)
  if(build STREQUAL "")
    set(build 0)
  endif()
  tolvar_plist_text(TOLVAR_PLIST_VERSION "${version}")
  tolvar_plist_text(TOLVAR_PLIST_BUILD "${build}")
  tolvar_plist_text(TOLVAR_PLIST_MINIMUM_SYSTEM "${minimum_system}")
  tolvar_plist_text(TOLVAR_PLIST_UPDATE_URL "${update_url}")
  tolvar_plist_text(TOLVAR_PLIST_EXECUTABLE "${executable}")
  file(GLOB tables RELATIVE ${TOLVAR_INFO_PLIST_ROOT}/resources/l10n ${TOLVAR_INFO_PLIST_ROOT}/resources/l10n/*.json)
  list(SORT tables)
  set(lines)
  foreach(table ${tables})
    string(REGEX REPLACE "\\.json$" "" code "${table}")
    list(APPEND lines "\t\t<string>${code}</string>")
  endforeach()
  list(JOIN lines "\n" TOLVAR_PLIST_LOCALIZATIONS)
  configure_file(${TOLVAR_INFO_PLIST_ROOT}/resources/macos/Info.plist.in ${output} @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  if(NOT DEFINED EXECUTABLE)
    set(EXECUTABLE Tolvar)
  endif()
  tolvar_info_plist("${OUTPUT}" "${VERSION}" "${BUILD}" "${MINIMUM_SYSTEM}" "${UPDATE_URL}" "${EXECUTABLE}")
endif()
