# Runs on the staged files of each package before it is closed: copyright and changelog stand where Debian looks for
# them, and what it wants compressed is, without name and time of the compressed file.

# Where one is given, the day comes from the environment (SOURCE_DATE_EPOCH).
string(TIMESTAMP day "%a, %d %b %Y %H:%M:%S +0000" UTC)

foreach(pair IN LISTS CPACK_QIR_NAMES)
  string(REPLACE "=" ";" pair ${pair})
  list(GET pair 0 component)
  list(GET pair 1 name)
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
  if(NOT IS_DIRECTORY ${CPACK_TEMPORARY_DIRECTORY}/${component})
    continue()
  endif()
  file(COPY ${CPACK_QIR_COPYRIGHT} DESTINATION ${share}/doc/${name}
       FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  file(WRITE ${share}/doc/${name}/changelog
    "qir (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
    "  * Version ${CPACK_PACKAGE_VERSION}. The package qir-doc has what changed, in CHANGELOG.md.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${day}\n")
  file(GLOB pages ${share}/man/man1/*.1)
  execute_process(COMMAND gzip -9n ${share}/doc/${name}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB_RECURSE compressed ${share}/*.gz)
  file(CHMOD ${compressed} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  file(GLOB_RECURSE folders LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/${component}/*)
  foreach(folder IN LISTS folders)
    if(IS_DIRECTORY ${folder})
      file(CHMOD ${folder} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                 WORLD_READ WORLD_EXECUTE)
    endif()
  endforeach()
endforeach()
