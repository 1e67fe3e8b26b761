# Two zips: the programs with docs and licences, and the debug symbols. Every time stamp in them is the commit's, so two
# packages of one commit are the same bytes.
if(NOT WIN32)
  return()
endif()

# The reader as a page is the same on every system. It is there when the preset web was built.
install(FILES build/web/sentiq-logs.html DESTINATION . COMPONENT program OPTIONAL)
install(TARGETS CanvixSentiq sentiq-logs RUNTIME DESTINATION . COMPONENT program)
install(FILES README.md CHANGELOG.md SECURITY.md DESTINATION . COMPONENT program)
install(DIRECTORY docs DESTINATION . COMPONENT program)
install(DIRECTORY cmake/licences/ DESTINATION licences COMPONENT program)
install(FILES reader/sentiq-logs.1 reader/sentiq-lnav.json DESTINATION reader COMPONENT program)
foreach(program CanvixSentiq sentiq-logs)
  if(MSVC)
    install(FILES "$<TARGET_PDB_FILE:${program}>" DESTINATION . COMPONENT symbols)
  else()
    install(FILES "$<TARGET_FILE:${program}>.debug" DESTINATION . COMPONENT symbols)
  endif()
endforeach()

# CPack's zips hold the times at which it copied the files; this writes them anew with the commit's.
file(WRITE "${CMAKE_BINARY_DIR}/SameBytes.cmake" "
execute_process(COMMAND git log -1 --format=%ct WORKING_DIRECTORY \"${PROJECT_SOURCE_DIR}\" OUTPUT_VARIABLE time
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
foreach(package \${CPACK_PACKAGE_FILES})
  set(folder \"\${package}.content\")
  file(ARCHIVE_EXTRACT INPUT \"\${package}\" DESTINATION \"\${folder}\")
  file(GLOB_RECURSE files RELATIVE \"\${folder}\" \"\${folder}/*\")
  file(REMOVE \"\${package}\")
  execute_process(COMMAND touch --date=@\${time} \${files} WORKING_DIRECTORY \"\${folder}\" COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND \${CMAKE_COMMAND} -E env TZ=UTC zip -q -X \"\${package}\" \${files}
    WORKING_DIRECTORY \"\${folder}\" COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE \"\${folder}\")
endforeach()
")

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME CanvixSentiq)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_FILE_NAME "CanvixSentiq-${PROJECT_VERSION}-windows-x64")
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL program symbols)
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY OFF)
if(NOT MSVC)  # There are neither touch nor zip.
  set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_BINARY_DIR}/SameBytes.cmake")
endif()
include(CPack)
