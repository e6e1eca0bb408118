# kel_library(<target> <ExportName> [LIBS...]) makes one of our shared libraries: Kel::<ExportName>,
# built as libKel_<target>.so, hidden symbols, Qt code generation on.
# kel_library_files(<target> [HEADERS ...] [SOURCES ...]) adds the files of one folder to it; the
# headers are public: installed flat under include/KelWidgets and checked to compile alone.

function(kel_library target export_name)
    add_library(Kel_${target} SHARED)
    add_library(Kel::${export_name} ALIAS Kel_${target})
    string(TOUPPER ${target} upper)
    set_target_properties(Kel_${target} PROPERTIES
        EXPORT_NAME ${export_name}
        DEFINE_SYMBOL KEL_BUILDING_${upper}
        VERSION ${PROJECT_VERSION}
        SOVERSION 0
        AUTOMOC ON AUTOUIC ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_features(Kel_${target} PUBLIC cxx_std_17)
    # Nobody puts functions of their own in the place of ours: what a library calls in itself needs no look-up at start.
    target_link_options(Kel_${target} PRIVATE -Wl,-Bsymbolic-functions)
    target_link_libraries(Kel_${target} PUBLIC ${ARGN} PRIVATE $<BUILD_INTERFACE:kel_compiler>)
    install(TARGETS Kel_${target} EXPORT KelWidgetsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KelWidgets)
endfunction()

function(kel_library_files target)
    cmake_parse_arguments(arg "" "" "HEADERS;SOURCES" ${ARGN})
    list(TRANSFORM arg_HEADERS PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
    list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
    target_sources(Kel_${target} PRIVATE ${arg_HEADERS} ${arg_SOURCES})
    target_include_directories(Kel_${target} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_LIST_DIR}>)
    install(FILES ${arg_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KelWidgets)
    set_property(GLOBAL APPEND PROPERTY KEL_PUBLIC_HEADERS ${arg_HEADERS})
endfunction()

# kel_library_resources(<target> <file.qrc>) compiles a resource set into the library. Its
# qInitResources_<name>/qCleanupResources_<name> pair stays visible, as hosts call it by name.
function(kel_library_resources target qrc)
    cmake_language(CALL ${KEL_QT_LOWER}_add_resources generated ${CMAKE_CURRENT_LIST_DIR}/${qrc})
    set_source_files_properties(${generated} TARGET_DIRECTORY Kel_${target}
        PROPERTIES COMPILE_OPTIONS "-fvisibility=default;-Wno-error" SKIP_AUTOGEN ON)
    target_sources(Kel_${target} PRIVATE ${generated})
endfunction()
string(TOLOWER ${KEL_QT} KEL_QT_LOWER)
