# Takes away what cmake --install has put somewhere, by the list that it wrote, and the folders that are empty then:
#
#   cmake [-DPREFIX=WHERE] -DMANIFEST=build/release/install_manifest.txt -P cmake/Uninstall.cmake
#
# PREFIX, with -DINSTALLED=OLD, names the place of an installation that has been moved away from the prefix OLD.
file(STRINGS ${MANIFEST} files)
set(folders "")
foreach(file IN LISTS files)
  if(DEFINED INSTALLED)
    cmake_path(RELATIVE_PATH file BASE_DIRECTORY ${INSTALLED})
    cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${PREFIX})
  endif()
  if(EXISTS ${file} OR IS_SYMLINK ${file})
    file(REMOVE ${file})
  endif()
  cmake_path(GET file PARENT_PATH folder)
  list(APPEND folders ${folder})
endforeach()
# From the longest path up, until a folder holds something else.
while(folders)
  list(REMOVE_DUPLICATES folders)
  set(above "")
  foreach(folder IN LISTS folders)
    file(GLOB left LIST_DIRECTORIES true ${folder}/* ${folder}/.*)
    list(FILTER left EXCLUDE REGEX "/\\.\\.?$")
    if(IS_DIRECTORY ${folder} AND NOT left)
      file(REMOVE_RECURSE ${folder})
      cmake_path(GET folder PARENT_PATH parent)
      list(APPEND above ${parent})
    endif()
  endforeach()
  set(folders ${above})
endwhile()
