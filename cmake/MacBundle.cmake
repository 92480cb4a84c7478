# Makes the executable target the application bundle Tolvar.app: Info.plist,
# the icon drawn from the same artwork as the Linux icon, the string tables and
# one localisation folder per language in Contents/Resources.
include(${CMAKE_CURRENT_LIST_DIR}/InfoPlist.cmake)

set(TOLVAR_BUILD_NUMBER "" CACHE STRING "Build number of a release build; empty for a development build")
set(TOLVAR_UPDATE_URL "" CACHE STRING "https address of the release manifest; empty disables update checks")

function(tolvar_macos_bundle target)
  set(root ${PROJECT_SOURCE_DIR})
  set(out ${CMAKE_CURRENT_BINARY_DIR}/bundle)

  # Rendered here rather than by CMake's own bundle template, so that the tests
  # check the very file the bundle gets; CMake configures it once more, which
  # leaves it as it is.
  tolvar_info_plist(${out}/Info.plist "${PROJECT_VERSION}" "${TOLVAR_BUILD_NUMBER}"
    "${CMAKE_OSX_DEPLOYMENT_TARGET}" "${TOLVAR_UPDATE_URL}" Tolvar)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME Tolvar
    MACOSX_BUNDLE_INFO_PLIST ${out}/Info.plist)

  # The string tables, where the running program looks for them.
  file(GLOB tables CONFIGURE_DEPENDS ${root}/resources/l10n/*.json)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${tables} ${root}/resources/macos/Info.plist.in)
  set_source_files_properties(${tables} PROPERTIES MACOSX_PACKAGE_LOCATION Resources/l10n)
  target_sources(${target} PRIVATE ${tables})

  # One <code>.lproj per table, so that the system lists the languages and
  # names the application in each.
  foreach(table ${tables})
    get_filename_component(code ${table} NAME_WE)
    file(READ ${table} json)
    string(JSON name GET "${json}" "app.name")
    string(REPLACE "\"" "\\\"" name "${name}")
    set(strings ${out}/${code}.lproj/InfoPlist.strings)
    file(CONFIGURE OUTPUT ${strings} CONTENT "CFBundleName = \"${name}\";\nCFBundleDisplayName = \"${name}\";\n")
    set_source_files_properties(${strings} PROPERTIES MACOSX_PACKAGE_LOCATION Resources/${code}.lproj)
    target_sources(${target} PRIVATE ${strings})
  endforeach()

  # AppIcon.icns: the artwork rendered at every size by tolvar_iconset, then
  # packed by iconutil.
  set(artwork ${root}/resources/icons/app/tolvar.svg)
  add_custom_command(OUTPUT ${out}/AppIcon.icns
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${out}/AppIcon.iconset
    COMMAND tolvar_iconset ${artwork} ${out}/AppIcon.iconset
    COMMAND iconutil --convert icns --output ${out}/AppIcon.icns ${out}/AppIcon.iconset
    DEPENDS ${artwork} tolvar_iconset
    COMMENT "Drawing AppIcon.icns")
  set_source_files_properties(${out}/AppIcon.icns PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  target_sources(${target} PRIVATE ${out}/AppIcon.icns)
endfunction()
