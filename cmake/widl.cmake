# Sets `widl`, the command of the interface compiler for the target, and its folders of system definitions.

find_program(WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
find_path(IDL_FOLDER oaidl.idl PATHS /usr/include/wine/wine/windows NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_path(STDOLE_FOLDER stdole2.tlb
    PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows NO_CMAKE_FIND_ROOT_PATH REQUIRED)

math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
set(widl ${WIDL} --win${bits} -m${bits} -I ${IDL_FOLDER} -L ${STDOLE_FOLDER})
