# The QML of one folder as a static module. Its C++ types come from the folder's own library; headers that register
# them stand in TYPES. Generated code includes them by bare name, and is not ours to warn about.

set(QT_QML_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml)

# Gives a library's classes their meta objects, and lets a module show them to QML.
function(kestrix_qml_types target)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  qt_extract_metatypes(${target})
endfunction()

# What is compiled of QML was generated: the sanitizers, which take three times as long for it, would find faults that are not ours.
function(_kestrix_compile_generated)
  foreach(target IN LISTS ARGN)
    if(KESTRIX_SANITIZE)
      _kestrix_compile_plainly(${target})
    else()
      kestrix_read_qt_once(${target})
      kestrix_compile_quickly(${target})
    endif()
  endforeach()
endfunction()

# kestrix_qml_module(TARGET [NO_PLUGIN] URI Kestrix.X QML a.qml... TYPES XTypes.h LINK lib... DEPENDS Kestrix.Y)
function(kestrix_qml_module target)
  cmake_parse_arguments(A "NO_PLUGIN" "URI" "QML;TYPES;LINK;DEPENDS" ${ARGN})
  set(options)
  if(A_NO_PLUGIN)
    list(APPEND options NO_PLUGIN)
  endif()
  qt_add_library(${target} STATIC)
  set_target_properties(${target} PROPERTIES AUTOMOC ON UNITY_BUILD_BATCH_SIZE 0)
  qt_add_qml_module(${target} ${options}
    URI ${A_URI} VERSION 1.0
    RESOURCE_PREFIX /qt/qml
    QML_FILES ${A_QML}
    SOURCES ${A_TYPES}
    DEPENDENCIES ${A_DEPENDS}
    IMPORT_PATH ${QT_QML_OUTPUT_DIRECTORY})
  target_include_directories(${target}
    PUBLIC ${PROJECT_SOURCE_DIR}/src PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${A_LINK} Qt6::Qml Qt6::Quick)
  _kestrix_compile_generated(${target} ${target}_qmlcache)
endfunction()

# The views of one folder: a module (arguments as above) that the window loads, and whose QML files are checked; any
# warning fails. Without a plugin: Qt reads what every static plugin says of itself again whenever it looks for any plugin at all.
function(kestrix_views target)
  kestrix_qml_module(${target} NO_PLUGIN ${ARGN})
  set_property(GLOBAL APPEND PROPERTY KESTRIX_VIEWS ${target})
  if(KESTRIX_TESTS)
    get_target_property(files ${target} QT_QML_MODULE_QML_FILES)
    add_test(NAME Qml.${target} COMMAND Qt6::qmllint --bare
      -I ${QT_QML_OUTPUT_DIRECTORY} -I ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_QML} ${files})
  endif()
endfunction()

# kestrix_screens(FOLDER live [LIBRARY console] CONTROLLERS a.cpp... VIEWS A.qml... [SCREENS AViewController... | TYPES LiveTypes.h]
#   LINK lib... TESTS a_test.cpp...)
# All that a folder with screens consists of: the library of its controllers, kestrix_live, which needs no display, the
# module of its views, Kestrix.Live, and the program of its tests, live_tests. SCREENS: the controllers that the views know, each
# with a header of its name; TYPES: a header that says so by hand, for a folder that shows the views more than its screens. LINK: what
# the controllers need besides ui and platform. TESTS: in the folder of this name under tests/. LIBRARY: what library, views and tests are named
# after, where the folder's own name is that of what links no screen; the module keeps the folder's.
function(kestrix_screens)
  cmake_parse_arguments(A "" "FOLDER;LIBRARY" "CONTROLLERS;VIEWS;SCREENS;TYPES;LINK;TESTS" ${ARGN})
  if(NOT A_LIBRARY)
    set(A_LIBRARY ${A_FOLDER})
  endif()
  string(SUBSTRING ${A_FOLDER} 0 1 initial)
  string(SUBSTRING ${A_FOLDER} 1 -1 rest)
  string(TOUPPER ${initial} initial)
  kestrix_library(kestrix_${A_LIBRARY} SOURCES ${A_CONTROLLERS} LINK ${A_LINK} kestrix_ui kestrix_platform Qt6::Core)
  kestrix_qml_types(kestrix_${A_LIBRARY})
  kestrix_read_qt_once(kestrix_${A_LIBRARY})
  kestrix_compile_quickly(kestrix_${A_LIBRARY})
  set_property(GLOBAL APPEND PROPERTY KESTRIX_SCREENS kestrix_${A_LIBRARY})
  if(A_SCREENS)
    _kestrix_screen_types(${CMAKE_CURRENT_BINARY_DIR}/${initial}${rest}Types.h ${A_FOLDER} ${A_SCREENS})
    list(APPEND A_TYPES ${CMAKE_CURRENT_BINARY_DIR}/${initial}${rest}Types.h)
  endif()
  kestrix_views(kestrix_${A_LIBRARY}_views URI Kestrix.${initial}${rest}
    QML ${A_VIEWS}
    TYPES ${A_TYPES}
    LINK kestrix_${A_LIBRARY} kestrix_ui_views
    DEPENDS QtQuick Kestrix.Ui)
  target_include_directories(kestrix_${A_LIBRARY}_views PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
  if(A_TESTS AND KESTRIX_TESTS)
    list(TRANSFORM A_TESTS PREPEND ${PROJECT_SOURCE_DIR}/tests/${A_FOLDER}/)
    kestrix_test(${A_LIBRARY}_tests GUI SOURCES ${A_TESTS} LINK kestrix_${A_LIBRARY} kestrix_test_support)
    set_target_properties(${A_LIBRARY}_tests PROPERTIES
      RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests/${A_FOLDER})
  endif()
endfunction()

# Writes the header that tells QML the classes of a folder under their own names.
function(_kestrix_screen_types file folder)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE here)
  string(REGEX REPLACE "^src/" "" here ${here})
  set(includes "#pragma once\n\n#include <QtQml/qqmlregistration.h>\n\n")
  set(types "")
  foreach(screen IN LISTS ARGN)
    string(APPEND includes "#include \"${here}/${screen}.h\"\n")
    string(APPEND types "struct ${screen}Type {\n    Q_GADGET\n    QML_FOREIGN(kestrix::${folder}::${screen})\n"
      "    QML_NAMED_ELEMENT(${screen})\n    QML_UNCREATABLE(\"belongs to the application\")\n};\n")
  endforeach()
  file(CONFIGURE OUTPUT ${file} @ONLY CONTENT
    "${includes}#include \"ui/UiTypes.h\"\n\nnamespace kestrix::${folder}::qml {\n${types}}\n")
endfunction()

# Links a library with the controllers of every folder of screens that there is so far.
function(kestrix_link_all_screens target)
  get_property(screens GLOBAL PROPERTY KESTRIX_SCREENS)
  target_link_libraries(${target} PUBLIC ${screens})
endfunction()

# kestrix_link_views(TARGET module...): links a program or library with modules of views, which register themselves at the
# start. Each does so in its library, of which the linker takes only what is asked for: its function, by the compiler's name.
function(kestrix_link_views target)
  foreach(module IN LISTS ARGN)
    get_target_property(uri ${module} QT_QML_MODULE_URI)
    string(REPLACE "." "_" function "qml_register_types_${uri}")
    string(LENGTH ${function} length)
    target_link_options(${target} PUBLIC LINKER:--undefined=_Z${length}${function}v)
    target_link_libraries(${target} PUBLIC ${module})
  endforeach()
  target_link_libraries(${target} PUBLIC Qt6::Quick)
endfunction()

# The same with every module of views that there is so far.
function(kestrix_link_all_views target)
  get_property(views GLOBAL PROPERTY KESTRIX_VIEWS)
  kestrix_link_views(${target} ${views})
endfunction()
