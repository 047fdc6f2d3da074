# The Debian package; packaging/check-package makes it and tries it. One package: the command line alone would save 2 MB and no
# dependency that matters, for a second thing to choose, to update and to get wrong.

# What the programs need besides the libraries they are linked with stands in scripts/install-packages: its group `run` is what they do
# not work without, `desktop` what they work better with.
function(_kestrix_packages_of group result)
  file(READ ${PROJECT_SOURCE_DIR}/scripts/install-packages script)
  if(NOT script MATCHES "packages\\[${group}\\]=\"([^\"]*)\"")
    message(FATAL_ERROR "scripts/install-packages has no group '${group}'")
  endif()
  string(STRIP "${CMAKE_MATCH_1}" packages)
  string(REGEX REPLACE "[ \n]+" ", " packages "${packages}")
  set(${result} "${packages}" PARENT_SCOPE)
endfunction()
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/scripts/install-packages ${PROJECT_SOURCE_DIR}/packaging/description)
_kestrix_packages_of(run CPACK_DEBIAN_PACKAGE_DEPENDS)
_kestrix_packages_of(desktop CPACK_DEBIAN_PACKAGE_RECOMMENDS)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrix)
set(CPACK_PACKAGE_VENDOR "Kestrix developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "display and record of a handheld installation tester")
set(CPACK_PACKAGE_DESCRIPTION_FILE ${PROJECT_SOURCE_DIR}/packaging/description)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${KESTRIX_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
