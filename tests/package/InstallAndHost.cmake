# Installs the build into a fresh prefix under WORK_DIR, checks the installed layout,
# runs the installed program, then builds and runs a host against the installed package.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DHOST_SOURCE_DIR=... -DLIBDIR=... -DGENERATOR=...
#         -DMAKE_PROGRAM=... -DCXX_COMPILER=... -DQT_MAJOR=... [-DHOST_FLAGS=...] -P InstallAndHost.cmake
foreach(var BUILD_DIR WORK_DIR HOST_SOURCE_DIR LIBDIR GENERATOR CXX_COMPILER QT_MAJOR)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "${var} is not set")
    endif()
endforeach()

function(run step)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${step} failed (${status}):\n${out}")
    endif()
    message(STATUS "${step}: ok")
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(examples ${prefix}/share/product-editor/examples/definitions)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

run("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

foreach(path
        ${LIBDIR}/libproduct_editor.so ${LIBDIR}/libproduct_editor.so.1 ${LIBDIR}/libproduct_editor.so.1.0.0
        include/ProductEditor/ProductEditorExport.h include/ProductEditor/editor/CreateProductEditor.h
        include/ProductEditor/store/VantixJsonData.h include/ProductEditor/json/QJsonModel.h
        include/ProductEditor/models/Model.h
        ${LIBDIR}/cmake/ProductEditor/ProductEditorConfig.cmake
        ${LIBDIR}/cmake/ProductEditor/ProductEditorConfigVersion.cmake
        ${LIBDIR}/cmake/ProductEditor/ProductEditorTargets.cmake
        bin/product-editor share/applications/product-editor.desktop
        share/product-editor/examples/definitions/products/products.json)
    if(NOT EXISTS ${prefix}/${path})
        message(FATAL_ERROR "not installed: ${path}")
    endif()
endforeach()
foreach(path include/ProductEditor/editor/EditorPrivate.h bin/editor_EditorFormTest bin/StoreBench)
    if(EXISTS ${prefix}/${path})
        message(FATAL_ERROR "installed but should not be: ${path}")
    endif()
endforeach()

# The library links the Qt major it was built for, and no other.
file(GET_RUNTIME_DEPENDENCIES LIBRARIES ${prefix}/${LIBDIR}/libproduct_editor.so
    RESOLVED_DEPENDENCIES_VAR resolved UNRESOLVED_DEPENDENCIES_VAR unresolved)
list(FILTER resolved INCLUDE REGEX "/libQt[0-9]Core\\.so")
list(TRANSFORM resolved REPLACE ".*/libQt([0-9])Core\\.so.*" "\\1")
if(NOT resolved STREQUAL QT_MAJOR)
    message(FATAL_ERROR "the installed library links Qt '${resolved}', expected Qt ${QT_MAJOR}")
endif()

# The installed program must find the installed library through its own RPATH.
run("installed program" ${prefix}/bin/product-editor check ${examples})

set(host_args)
if(MAKE_PROGRAM)
    list(APPEND host_args -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM})
endif()
if(HOST_FLAGS)
    list(APPEND host_args "-DCMAKE_CXX_FLAGS=${HOST_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${HOST_FLAGS}")
endif()
run("host configure" ${CMAKE_COMMAND} -S ${HOST_SOURCE_DIR} -B ${WORK_DIR}/host -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON -DEXPECTED_QT_MAJOR=${QT_MAJOR} ${host_args})
run("host build" ${CMAKE_COMMAND} --build ${WORK_DIR}/host)
run("host run" ${WORK_DIR}/host/host ${examples})
