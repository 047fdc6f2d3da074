# The version, and who says so, stand in packaging/changelog and nowhere else: in the line on top, and behind the first " -- ".
set(_changelog ${CMAKE_CURRENT_SOURCE_DIR}/packaging/changelog)
file(STRINGS ${_changelog} _lines REGEX "^(kestrix \\(| -- )")
if(NOT "${_lines}" MATCHES "^kestrix \\(([0-9]+\\.[0-9]+\\.[0-9]+)\\)[^<]* -- ([^<]*<[^>]*>)")
  message(FATAL_ERROR "${_changelog} does not begin with 'kestrix (1.2.3) ...' and its ' -- who <address>  date'")
endif()
set(KESTRIX_VERSION ${CMAKE_MATCH_1})
set(KESTRIX_MAINTAINER "${CMAKE_MATCH_2}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${_changelog})
