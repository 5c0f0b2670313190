# Install rules: the library the way Qt libraries install (versioned .so, headers under
# include/ProductEditor, a CMake package with imported targets), the program, the
# bundled example and the desktop entry. Test, benchmark and fuzz targets stay out.
include(CMakePackageConfigHelpers)

set(PE_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ProductEditor)
set(PE_INSTALL_HEADERDIR ${CMAKE_INSTALL_INCLUDEDIR}/ProductEditor)

install(TARGETS product_editor EXPORT ProductEditorTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Headers keep their folders, since they include each other as "store/...", "json/"...
# The window's private record is left out: it needs the generated form header.
install(FILES ${PROJECT_SOURCE_DIR}/src/ProductEditorExport.h DESTINATION ${PE_INSTALL_HEADERDIR})
foreach(folder store json diff merge check models editor)
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.h)
    list(FILTER headers EXCLUDE REGEX "/EditorPrivate\\.h$")
    install(FILES ${headers} DESTINATION ${PE_INSTALL_HEADERDIR}/${folder})
endforeach()

install(EXPORT ProductEditorTargets
    NAMESPACE ProductEditor::
    DESTINATION ${PE_INSTALL_CMAKEDIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/packaging/ProductEditorConfig.cmake.in
    ${PROJECT_BINARY_DIR}/ProductEditorConfig.cmake
    INSTALL_DESTINATION ${PE_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ProductEditorConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/ProductEditorConfig.cmake
    ${PROJECT_BINARY_DIR}/ProductEditorConfigVersion.cmake
    DESTINATION ${PE_INSTALL_CMAKEDIR})

# The installed program finds the library relative to itself, wherever the prefix is.
file(RELATIVE_PATH pe_bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(product-editor PROPERTIES INSTALL_RPATH "$ORIGIN/${pe_bin_to_lib}")
install(TARGETS product-editor RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The program looks for its example at <bin>/../share/product-editor/examples/definitions.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/definitions
    DESTINATION ${CMAKE_INSTALL_DATADIR}/product-editor/examples)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/product-editor.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
