# Kestrow.app: what is in the bundle, what goes beside it, and the disk image that CPack makes of it.
# Included where the target kestrow is made, which is the only place that can add steps to its building.
set(version ${PROJECT_VERSION})
set(here ${CMAKE_CURRENT_LIST_DIR})
set_target_properties(kestrow PROPERTIES
  OUTPUT_NAME Kestrow
  MACOSX_BUNDLE ON
  MACOSX_BUNDLE_INFO_PLIST ${here}/Info.plist.in
  MACOSX_BUNDLE_BUNDLE_NAME Kestrow
  MACOSX_BUNDLE_GUI_IDENTIFIER org.kestrow.Kestrow
  MACOSX_BUNDLE_ICON_FILE Kestrow.icns
  MACOSX_BUNDLE_SHORT_VERSION_STRING ${version}
  MACOSX_BUNDLE_BUNDLE_VERSION ${version})

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(pictures ${CMAKE_SOURCE_DIR}/Packaging/icons/png)
set(icon ${CMAKE_CURRENT_BINARY_DIR}/Kestrow.icns)
file(GLOB picture_files CONFIGURE_DEPENDS ${pictures}/*.png)
add_custom_command(OUTPUT ${icon}
  COMMAND ${Python3_EXECUTABLE} ${here}/make-icns ${pictures} ${icon}
  DEPENDS ${here}/make-icns ${picture_files} VERBATIM)
add_custom_target(kestrow-icon DEPENDS ${icon})
add_dependencies(kestrow kestrow-icon)

# The notices of the libraries that become part of the bundle, which must go wherever they go.
file(GLOB licences CONFIGURE_DEPENDS ${here}/licences/*.txt)

# A processor of Apple's runs signed code only, and nothing may change a bundle after its signing. Here
# the signature is nobody's; Docs/macos.md tells how to give it one that other Macs trust.
set(KESTROW_SIGNING_IDENTITY "-" CACHE STRING "Who signs Kestrow.app; - for a signature of nobody's")
set(resources $<TARGET_BUNDLE_CONTENT_DIR:kestrow>/Resources)
add_custom_command(TARGET kestrow POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E make_directory ${resources}/Licences
  COMMAND ${CMAKE_COMMAND} -E copy ${icon} ${resources}
  COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/LICENSE ${resources}/Licences/Kestrow.txt
  COMMAND ${CMAKE_COMMAND} -E copy ${licences} ${resources}/Licences
  COMMAND codesign --force --sign ${KESTROW_SIGNING_IDENTITY} $<TARGET_BUNDLE_DIR:kestrow>
  VERBATIM)

# The installed bundle carries the libraries that no other Mac has, and is signed anew.
install(TARGETS kestrow BUNDLE DESTINATION .)
configure_file(${here}/finish-bundle.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/finish-bundle.cmake @ONLY)
install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/finish-bundle.cmake)

set(CPACK_GENERATOR DragNDrop ZIP)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGE_FILE_NAME Kestrow-${version}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_ICON ${icon})
set(CPACK_DMG_VOLUME_NAME Kestrow)
set(CPACK_DMG_FORMAT UDZO)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
include(CPack)
