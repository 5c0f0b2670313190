# Install rules: the library the way Qt libraries install (versioned .so, headers under
# include/<package>, a CMake package with imported targets), the program, the bundled
# example and the desktop entry. Every name carries the Qt major past 5 (ProductEditorQt6,
# libproduct_editor_qt6.so, product-editor-qt6), so a Qt 5 and a Qt 6 build share no file.
# Test, benchmark and fuzz targets stay out.
include(CMakePackageConfigHelpers)

set(PE_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/${PE_PACKAGE_NAME})
set(PE_INSTALL_HEADERDIR ${CMAKE_INSTALL_INCLUDEDIR}/${PE_PACKAGE_NAME})

install(TARGETS product_editor EXPORT ${PE_PACKAGE_NAME}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Only the headers a host reaches: the entry, the window it returns, the store that a
# catalogue factory receives with its load report, and the default catalogue. They keep
# their folders, since they include each other as "store/...". The package test compiles
# every installed header on its own, so a header that needs one left out fails there.
set(PE_PUBLIC_HEADERS
    ProductEditorExport.h
    editor/CreateProductEditor.h editor/VantixJSONEditor.h
    store/VantixJsonData.h store/LoadReport.h store/DefaultLicenseCatalogue.h)
foreach(header ${PE_PUBLIC_HEADERS})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${header} DESTINATION ${PE_INSTALL_HEADERDIR}/${folder})
endforeach()

install(EXPORT ${PE_PACKAGE_NAME}Targets
    NAMESPACE ${PE_PACKAGE_NAME}::
    DESTINATION ${PE_INSTALL_CMAKEDIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/packaging/ProductEditorConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${PE_PACKAGE_NAME}Config.cmake
    INSTALL_DESTINATION ${PE_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${PE_PACKAGE_NAME}ConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/${PE_PACKAGE_NAME}Config.cmake
    ${PROJECT_BINARY_DIR}/${PE_PACKAGE_NAME}ConfigVersion.cmake
    DESTINATION ${PE_INSTALL_CMAKEDIR})

# The installed program finds the library relative to itself, wherever the prefix is.
file(RELATIVE_PATH pe_bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(product-editor PROPERTIES INSTALL_RPATH "$ORIGIN/${pe_bin_to_lib}")
install(TARGETS product-editor RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The program looks for its example at <bin>/../share/<program>/examples/definitions.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/definitions DESTINATION ${PE_DATA_DIR}/examples)
set(PE_NAME_NOTE "")
if(NOT QT_VERSION_MAJOR EQUAL 5)
    set(PE_NAME_NOTE " (Qt ${QT_VERSION_MAJOR})")
endif()
configure_file(${PROJECT_SOURCE_DIR}/packaging/product-editor.desktop.in
    ${PROJECT_BINARY_DIR}/${PE_PROGRAM_NAME}.desktop @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${PE_PROGRAM_NAME}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
