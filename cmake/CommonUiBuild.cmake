# How every target of this project is compiled, linked and run.
include_guard()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} -c 65001")

# Wine and Windows look for a program's DLLs beside it: everything runs from one folder.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_SHARED_LIBRARY_PREFIX "")
set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/tools/run-under-wine")

# Frame pointers and line tables in every build: a backtrace costs nothing until it is needed.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -g1 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")

add_compile_definitions(NOMINMAX WIN32_LEAN_AND_MEAN STRICT
    $<$<CONFIG:Debug>:_DEBUG> $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
add_compile_options(
    "$<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wshadow;-Woverloaded-virtual;-Wextra-semi;-Werror>"
    # This compiler finds bounds to overstep in the standard library's own growing vectors.
    "$<$<COMPILE_LANGUAGE:CXX>:-Wno-array-bounds>"
    "$<$<COMPILE_LANGUAGE:CXX>:-fno-omit-frame-pointer;-fstack-protector-strong>"
    # The trap needs no run-time library, which this toolchain lacks.
    "$<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CONFIG:Debug>>:-fsanitize=undefined;-fsanitize-undefined-trap-on-error>"
)
add_link_options(-Wl,--dynamicbase,--nxcompat -Wl,--no-undefined -fstack-protector-strong)

# All modules share the C++ run time, so that exceptions and casts cross their borders; stripped of
# debug information once, it is copied beside the programs.
function(commonui_copy_runtime)
    foreach(name libgcc_s_dw2-1.dll libstdc++-6.dll libwinpthread-1.dll libssp-0.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
            OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${path}")
            continue()
        endif()
        file(REAL_PATH "${path}" path)
        set(copy "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}")
        if(NOT EXISTS "${copy}")
            file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
            execute_process(COMMAND ${CMAKE_STRIP} --strip-debug -o "${copy}" "${path}"
                COMMAND_ERROR_IS_FATAL ANY)
        endif()
        list(APPEND copies "${copy}")
    endforeach()
    set(COMMONUI_RUNTIME_DLLS "${copies}" PARENT_SCOPE)
endfunction()
commonui_copy_runtime()

# The two DLLs that certificates load, beside the library, which looks for them there.
function(commonui_copy_openssl)
    foreach(name libcrypto-3 libssl-3)
        find_file(COMMONUI_${name} ${name}.dll PATH_SUFFIXES bin REQUIRED NO_CMAKE_FIND_ROOT_PATH)
        file(COPY "${COMMONUI_${name}}" DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    endforeach()
endfunction()

# clang-tidy runs with the compiler, so a source is checked again only when it changes.
if(COMMONUI_CLANG_TIDY)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=include/c++
        OUTPUT_VARIABLE headers OUTPUT_STRIP_TRAILING_WHITESPACE)
    set(CMAKE_CXX_CLANG_TIDY clang-tidy --quiet
        --extra-arg=--target=i686-w64-windows-gnu
        --extra-arg=-isystem${headers}
        --extra-arg=-isystem${headers}/i686-w64-mingw32
        --extra-arg=-isystem/usr/i686-w64-mingw32/include)
endif()

# commonui_compile_messages(SOURCE.mc HEADER LANGUAGE...): makes the header of the message ids and a
# table for each language, in the folder that commonui_messages names afterwards. Ids are marked as
# none of the system's.
find_program(COMMONUI_WINDMC i686-w64-mingw32-windmc REQUIRED)
function(commonui_compile_messages source header)
    get_filename_component(name "${source}" NAME_WE)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/messages")
    file(MAKE_DIRECTORY "${folder}")
    list(TRANSFORM ARGN REPLACE "(.+)" "${folder}/${name}_\\1.bin" OUTPUT_VARIABLE tables)
    add_custom_command(
        OUTPUT "${folder}/${header}" ${tables}
        COMMAND ${COMMONUI_WINDMC} -c -C 65001 -r "${folder}" -h "${folder}"
            "${CMAKE_CURRENT_SOURCE_DIR}/${source}"
        COMMAND ${CMAKE_COMMAND} -E copy_if_different "${folder}/${name}.h" "${folder}/${header}"
        DEPENDS "${source}"
        COMMENT "Compiling ${source}")
    set(commonui_messages "${folder}" PARENT_SCOPE)
endfunction()
