# Installs the build into a fresh prefix under WORK_DIR, checks the installed layout, runs
# the installed program, then builds and runs a host against the installed package. With
# OTHER_BUILD_DIR (a build against the other Qt major), that build is installed into the
# same prefix first: the two must not share a file, and a host is built against each.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DHOST_SOURCE_DIR=... -DLIBDIR=... -DGENERATOR=...
#         -DMAKE_PROGRAM=... -DCXX_COMPILER=... -DQT_MAJOR=... -DPACKAGE=... -DLIBRARY=...
#         -DPROGRAM=... [-DHOST_FLAGS=...] [-DOTHER_BUILD_DIR=... -DOTHER_QT_MAJOR=...
#         -DOTHER_PACKAGE=... -DOTHER_PROGRAM=...] -P InstallAndHost.cmake
cmake_minimum_required(VERSION 3.16)
foreach(var BUILD_DIR WORK_DIR HOST_SOURCE_DIR LIBDIR GENERATOR CXX_COMPILER QT_MAJOR PACKAGE LIBRARY PROGRAM)
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
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

set(other_files)
if(OTHER_BUILD_DIR)
    run("install ${OTHER_PACKAGE}" ${CMAKE_COMMAND} --install ${OTHER_BUILD_DIR} --prefix ${prefix})
    file(GLOB_RECURSE other_files LIST_DIRECTORIES false ${prefix}/*)
endif()
run("install ${PACKAGE}" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
file(STRINGS ${BUILD_DIR}/install_manifest.txt installed)
foreach(path ${installed})
    if(path IN_LIST other_files)
        message(FATAL_ERROR "${PACKAGE} installs over a file of ${OTHER_PACKAGE}: ${path}")
    endif()
endforeach()

set(lib ${LIBDIR}/lib${LIBRARY}.so)
set(cmakedir ${LIBDIR}/cmake/${PACKAGE})
set(headers include/${PACKAGE})
foreach(path
        ${lib} ${lib}.1 ${lib}.1.0.0
        ${headers}/ProductEditorExport.h ${headers}/editor/CreateProductEditor.h
        ${headers}/editor/VantixJSONEditor.h ${headers}/store/VantixJsonData.h
        ${cmakedir}/${PACKAGE}Config.cmake ${cmakedir}/${PACKAGE}ConfigVersion.cmake
        ${cmakedir}/${PACKAGE}Targets.cmake
        bin/${PROGRAM} share/applications/${PROGRAM}.desktop
        share/${PROGRAM}/examples/definitions/products/products.json)
    if(NOT EXISTS ${prefix}/${path})
        message(FATAL_ERROR "not installed: ${path}")
    endif()
endforeach()
# Pages, models and engines are the library's own business.
foreach(path ${headers}/editor/EditorPrivate.h ${headers}/editor/FeaturesPage.h ${headers}/models/Model.h
        ${headers}/json/QJsonModel.h ${headers}/check/FolderChecker.h
        bin/editor_EditorFormTest bin/StoreBench bin/pe-generate)
    if(EXISTS ${prefix}/${path})
        message(FATAL_ERROR "installed but should not be: ${path}")
    endif()
endforeach()

# The library links the Qt major it was built for, and no other.
file(GET_RUNTIME_DEPENDENCIES LIBRARIES ${prefix}/${lib}
    RESOLVED_DEPENDENCIES_VAR resolved UNRESOLVED_DEPENDENCIES_VAR unresolved)
list(FILTER resolved INCLUDE REGEX "/libQt[0-9]Core\\.so")
list(TRANSFORM resolved REPLACE ".*/libQt([0-9])Core\\.so.*" "\\1")
if(NOT resolved STREQUAL QT_MAJOR)
    message(FATAL_ERROR "the installed library links Qt '${resolved}', expected Qt ${QT_MAJOR}")
endif()

set(host_args)
if(MAKE_PROGRAM)
    list(APPEND host_args -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM})
endif()
if(HOST_FLAGS)
    list(APPEND host_args "-DCMAKE_CXX_FLAGS=${HOST_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${HOST_FLAGS}")
endif()

# The installed program finds the installed library through its own RPATH, and with no
# folder given opens the bundled example; a host built against the package opens it too.
function(try_package package program qt_major)
    set(examples ${prefix}/share/${program}/examples/definitions)
    run("installed ${program}" ${prefix}/bin/${program} check ${examples})
    run("installed ${program}, bundled example" ${prefix}/bin/${program} --screenshot ${WORK_DIR}/${program}.png)
    set(host ${WORK_DIR}/host-${package})
    run("host configure, ${package}" ${CMAKE_COMMAND} -S ${HOST_SOURCE_DIR} -B ${host} -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${prefix}
        -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON -DPE_PACKAGE=${package} -DEXPECTED_QT_MAJOR=${qt_major}
        ${host_args})
    run("host build, ${package}" ${CMAKE_COMMAND} --build ${host})
    run("host run, ${package}" ${host}/host ${examples})
endfunction()

try_package(${PACKAGE} ${PROGRAM} ${QT_MAJOR})
if(OTHER_BUILD_DIR)
    try_package(${OTHER_PACKAGE} ${OTHER_PROGRAM} ${OTHER_QT_MAJOR})
endif()
