# Debian packages: the editor, the component, the companion and the documents. tools/package makes them.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qir)
set(CPACK_PACKAGE_VENDOR "The QIR Database Editor contributors")
set(CPACK_PACKAGE_CONTACT "${QIR_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL editor component companion documents)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
if(QIR_WEB_ADDRESS)
  set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${QIR_WEB_ADDRESS})
endif()


# qir_package(COMPONENT NAME SUMMARY DESCRIPTION [DEPENDS ..] [RECOMMENDS ..] [SUGGESTS ..] [SECTION ..] [ARCHITECTURE ..]):
# one package. DEPENDS adds to what its libraries ask for.
macro(qir_package component name summary description)
  cmake_parse_arguments(arg "" "DEPENDS;RECOMMENDS;SUGGESTS;SECTION;ARCHITECTURE" "" ${ARGN})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
  foreach(kind DEPENDS RECOMMENDS SUGGESTS SECTION ARCHITECTURE)
    if(arg_${kind})
      set(CPACK_DEBIAN_${upper}_PACKAGE_${kind} "${arg_${kind}}")
    endif()
  endforeach()
endmacro()

qir_package(editor qir-editor "editor for small typed table databases"
"Opens databases of typed tables that live in single files, one or two side\n\
by side, and shows table by table and cell by cell where they differ.\n\
Differences can be walked and carried across; what is edited can be taken\n\
back, and survives a crash."
  DEPENDS "qir-component (= ${PROJECT_VERSION})" RECOMMENDS "qirdb, libqt6svg6, qt6-translations-l10n" SUGGESTS "qir-doc")
qir_package(component qir-component "reads and writes QIR databases for editor and companion"
"The library that the editor and the companion load at run time. It writes\n\
files whole or not at all, seals those that have a password, and keeps a\n\
journal of changes that are not saved yet."
  SECTION libs)
qir_package(companion qirdb "shows, compares, edits and merges QIR databases without a window"
"The companion of the editor for scripts: it shows, compares, edits, merges\n\
and audits databases, takes tables in from CSV and gives them out, and lets\n\
git show and merge databases."
  DEPENDS "qir-component (= ${PROJECT_VERSION})" SUGGESTS "git, qir-doc")
qir_package(documents qir-doc "guide, pages and sample databases of the QIR Database Editor"
"The user guide, the pages for those who script the companion, read the\n\
files or write a component, and six sample databases."
  SECTION doc ARCHITECTURE all)

# What Debian wants of a package beside what is installed elsewhere too.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/CompletePackages.cmake)
set(CPACK_QIR_COPYRIGHT ${CMAKE_CURRENT_LIST_DIR}/debian/copyright)
set(CPACK_QIR_NAMES editor=qir-editor component=qir-component companion=qirdb documents=qir-doc)

include(CPack)
