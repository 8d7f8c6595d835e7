# Sets `widl`, the command of the interface compiler for the target, with the system's definitions: Wine's IDL files, which
# are unpacked where they are not, and the standard type library as far as it is needed.

find_program(WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
set(VRX_IDL_FOLDER "" CACHE PATH "Folder of Wine's IDL files; fetched when they are not there")
if(NOT EXISTS ${VRX_IDL_FOLDER}/oaidl.idl)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/unpacked_package.sh libwine-dev
        OUTPUT_VARIABLE fetched OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set_property(CACHE VRX_IDL_FOLDER PROPERTY VALUE ${fetched}/usr/include/wine/wine/windows)
endif()

math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
set(widl ${WIDL} --win${bits} -m${bits} -I ${VRX_IDL_FOLDER} -L ${PROJECT_BINARY_DIR})

set(stdole_idl ${CMAKE_CURRENT_LIST_DIR}/stdole2.idl)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${stdole_idl})
execute_process(COMMAND ${widl} -t -o ${PROJECT_BINARY_DIR}/stdole2.tlb ${stdole_idl} COMMAND_ERROR_IS_FATAL ANY)
