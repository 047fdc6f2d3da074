# The QML of one folder as a static module. Its C++ types come from the folder's own library; headers that register
# them stand in TYPES. Generated code includes them by bare name, and is not ours to warn about.

set(QT_QML_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml)

# Gives a library's classes their meta objects, and lets a module show them to QML.
function(kestrix_qml_types target)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  qt_extract_metatypes(${target})
endfunction()

# kestrix_qml_module(TARGET URI Kestrix.X QML a.qml... TYPES XTypes.h LINK lib... DEPENDS Kestrix.Y)
function(kestrix_qml_module target)
  cmake_parse_arguments(A "" "URI" "QML;TYPES;LINK;DEPENDS" ${ARGN})
  set(CMAKE_AUTOMOC ON)
  qt_add_library(${target} STATIC)
  qt_add_qml_module(${target}
    URI ${A_URI} VERSION 1.0
    RESOURCE_PREFIX /qt/qml
    QML_FILES ${A_QML}
    SOURCES ${A_TYPES}
    DEPENDENCIES ${A_DEPENDS}
    IMPORT_PATH ${QT_QML_OUTPUT_DIRECTORY})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${A_LINK} Qt6::Qml Qt6::Quick)
endfunction()
