# Everything the build takes from outside, found once.

find_package(QT NAMES Qt5 Qt6 REQUIRED COMPONENTS Core)
set(KEL_QT Qt${QT_VERSION_MAJOR})
find_package(${KEL_QT} 5.15 REQUIRED COMPONENTS Core Gui Widgets Sql Svg UiTools UiPlugin Network)
if(KEL_BUILD_TESTS)
    find_package(${KEL_QT} 5.15 REQUIRED COMPONENTS Test)
endif()
if(KEL_BUILD_TESTS OR KEL_BUILD_BENCHMARKS)
    find_package(SQLite3 REQUIRED)
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(gpiod REQUIRED IMPORTED_TARGET "libgpiod >= 1.6")
pkg_check_modules(sodium REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(muparserx REQUIRED IMPORTED_TARGET muparserx)
find_path(KEL_ASIO_INCLUDE asio.hpp REQUIRED)
find_package(CLI11 REQUIRED)

# Where Qt Designer looks for plugins, below Qt's own prefix.
get_target_property(qmake ${KEL_QT}::qmake IMPORTED_LOCATION)
execute_process(COMMAND ${qmake} -query QT_INSTALL_PREFIX OUTPUT_VARIABLE prefix OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND ${qmake} -query QT_INSTALL_PLUGINS OUTPUT_VARIABLE plugins OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND ${qmake} -query QT_HOST_BINS OUTPUT_VARIABLE KEL_QT_PROGRAMS OUTPUT_STRIP_TRAILING_WHITESPACE)
file(RELATIVE_PATH plugins ${prefix} ${plugins})
set(KEL_DESIGNER_PLUGIN_DIR ${plugins}/designer CACHE STRING "Where the Qt Designer plugin goes, below the prefix")

# The plot library's own package description asks for parts of Qt that a plot does not need.
find_path(KEL_QWT_INCLUDE qwt_plot.h PATH_SUFFIXES qwt qwt-qt5 REQUIRED)
find_library(KEL_QWT_LIBRARY NAMES qwt-qt5 qwt REQUIRED)
add_library(kel_qwt INTERFACE IMPORTED)
set_target_properties(kel_qwt PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES ${KEL_QWT_INCLUDE}
    INTERFACE_LINK_LIBRARIES ${KEL_QWT_LIBRARY})
find_path(KEL_TOML_INCLUDE toml++/toml.h REQUIRED)
