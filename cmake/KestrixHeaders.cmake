# Headers that many sources include are read once and kept as the compiler's memory of them: half the time of building the
# libraries went into reading Qt's and the standard library's again for each. Every source still includes what it needs: the preset
# `dev` builds without this.

# In clang's memory of headers stands when they were written: for the compiler cache it would be another one in each new build folder.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
endif()

# kestrix_read_qt_once(TARGET...): for targets on Qt's core, whatever of Qt they use besides.
function(kestrix_read_qt_once)
  foreach(target IN LISTS ARGN)
    target_precompile_headers(${target} REUSE_FROM kestrix_qt_headers)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
  endforeach()
endfunction()

add_library(kestrix_qt_headers OBJECT cmake/QtHeaders.cpp)
_kestrix_common(kestrix_qt_headers)
target_link_libraries(kestrix_qt_headers PRIVATE Qt6::Core)
target_precompile_headers(kestrix_qt_headers PRIVATE
  <algorithm> <array> <chrono> <cstdint> <deque> <functional> <map> <memory> <optional> <set> <span> <string> <string_view>
  <utility> <vector>
  <QAbstractListModel> <QCoreApplication> <QFile> <QFileInfo> <QHash> <QList> <QLoggingCategory> <QMetaEnum> <QObject> <QPointer>
  <QRegularExpression> <QString> <QStringList> <QUrl> <QVariantList>)
