# One Debian package with the program, the library, its headers and CMake package:
# `cpack -G DEB` in the build folder. The Qt 6 build's package is product-editor-qt6,
# which shares no file with the Qt 5 one.
set(CPACK_PACKAGE_NAME ${PE_PROGRAM_NAME})
set(CPACK_PACKAGE_VENDOR "Product editor developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Editor for product-definition folders of JSON documents")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Loads a folder of product-definition documents (features, products, layouts, file formats "
    "and licenses), edits them as linked tables, shows every regeneration difference as a tree "
    "and writes the documents back. Ships the product-editor program and the product_editor "
    "library with its headers and CMake package for host applications.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Product editor developers <product-editor@localhost>")
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_PACKAGE_NAME ${PE_PROGRAM_NAME})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
# Run-time dependencies come from the binaries (dpkg-shlibdeps); building a host
# against the installed package also needs Qt's development files.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/lib)
if(QT_VERSION_MAJOR EQUAL 5)
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qtbase5-dev (>= ${PE_QT_MINIMUM})")
else()
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-base-dev (>= ${PE_QT_MINIMUM})")
endif()

include(CPack)
