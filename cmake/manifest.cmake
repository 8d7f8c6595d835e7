# vrx_add_manifest(DLL CLASS_TABLE IDL [MORE_TYPELIBS]) - writes the manifest for registration-free use beside the DLL, from
# its class table and its IDL.
# MORE_TYPELIBS: "UUID VERSION RESOURCE" of the type libraries in the DLL besides its own.

set(VRX_MANIFEST_ARCHITECTURE x86)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(VRX_MANIFEST_ARCHITECTURE amd64)
endif()

function(vrx_add_manifest dll class_table idl)
    list(JOIN ARGN " " more)
    set(script ${PROJECT_SOURCE_DIR}/cmake/manifest.awk)
    cmake_path(ABSOLUTE_PATH class_table)
    cmake_path(ABSOLUTE_PATH idl)
    set(manifest ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll}.X.manifest)
    add_custom_command(
        OUTPUT ${manifest}
        COMMAND awk -v dll=${dll}.dll -v architecture=${VRX_MANIFEST_ARCHITECTURE} -v "more_typelibs=${more}"
            -f ${script} ${class_table} ${idl} > ${manifest}
        DEPENDS ${script} ${class_table} ${idl} VERBATIM)
    add_custom_target(${dll}_manifest ALL DEPENDS ${manifest})
endfunction()
