# Every room of src/ is a static library. Its headers are found as "room/Header.h" only by what links the
# room, because each room has an include root of its own that holds nothing but that room: an include from
# above, or from a room that is not linked, does not build.

set(PELLAR_ROOMS ${CMAKE_BINARY_DIR}/rooms)

add_library(pellar_flags INTERFACE)
target_compile_options(pellar_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Werror -fno-plt
    # The code that qmlcachegen writes shadows its own parameters.
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:PELLAR_HAS_QML>>>:-Wshadow>)
target_compile_definitions(pellar_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(PELLAR_SANITIZE)
    target_compile_options(pellar_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(pellar_flags INTERFACE -fsanitize=address,undefined)
endif()

if(PELLAR_FUZZ)
    target_compile_options(pellar_flags INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined)
    target_link_options(pellar_flags INTERFACE -fsanitize=address,undefined)
endif()

# pellar_room(NAME [FOLDER folder below src] [LINKS targets…]): the library of one room, from all its sources.
function(pellar_room name)
    cmake_parse_arguments(ARG "" "FOLDER" "LINKS" ${ARGN})
    if(NOT ARG_FOLDER)
        set(ARG_FOLDER ${name})
    endif()
    set(folder ${PROJECT_SOURCE_DIR}/src/${ARG_FOLDER})
    if(name STREQUAL "platform") # its Linux side is a room of its own
        file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
    else()
        file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
    endif()
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    add_library(${name} STATIC ${sources})

    set(root ${PELLAR_ROOMS}/${name})
    if(name STREQUAL "platform")
        foreach(header ${sources})
            cmake_path(GET header FILENAME file)
            file(MAKE_DIRECTORY ${root}/platform)
            file(CREATE_LINK ${header} ${root}/platform/${file} SYMBOLIC)
        endforeach()
    else()
        cmake_path(GET ARG_FOLDER PARENT_PATH parent)
        file(MAKE_DIRECTORY ${root}/${parent})
        file(CREATE_LINK ${folder} ${root}/${ARG_FOLDER} SYMBOLIC)
    endif()
    target_include_directories(${name} PUBLIC ${root})
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE pellar_flags)
    if(name STREQUAL "base")
        target_precompile_headers(base PRIVATE <QtCore/QtCore>)
    else()
        target_precompile_headers(${name} REUSE_FROM base)
    endif()
endfunction()
