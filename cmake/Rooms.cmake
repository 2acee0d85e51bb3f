# Every room of src/ is a static library. Its headers are found as "room/Header.h" only by what links the
# room, because each room has an include root of its own that holds nothing but that room: an include from
# above, or from a room that is not linked, does not build.

set(PELLAR_ROOMS ${CMAKE_BINARY_DIR}/rooms)

add_library(pellar_flags INTERFACE)
target_compile_options(pellar_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Werror -fno-plt
    # PipeWire's macros are statement expressions.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-statement-expression>
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

# pellar_room(FOLDER [LINKS targets…]): the library of the folder below src/, from the sources right in it. Its
# name is the folder's with an underscore for each slash.
function(pellar_room folder)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    string(REPLACE "/" "_" name ${folder})
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.h)
    file(GLOB bodies CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
    list(FILTER bodies EXCLUDE REGEX "/main\\.cpp$")
    add_library(${name} STATIC ${headers} ${bodies})

    # A link a header, as the folder may hold those of other rooms.
    set(root ${PELLAR_ROOMS}/${name})
    file(REMOVE_RECURSE ${root})
    file(MAKE_DIRECTORY ${root}/${folder})
    foreach(header ${headers})
        cmake_path(GET header FILENAME file)
        file(CREATE_LINK ${header} ${root}/${folder}/${file} SYMBOLIC)
    endforeach()
    target_include_directories(${name} PUBLIC ${root})
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE pellar_flags)
    if(name STREQUAL "base")
        target_precompile_headers(base PRIVATE <QtCore/QtCore>)
    else()
        target_precompile_headers(${name} REUSE_FROM base)
    endif()
endfunction()

# pellar_dbus_proxies(FOLDER [CLASS INTERFACE]…): for each interface that src/FOLDER/INTERFACE.xml describes the class that
# calls it, included as <CLASS.h>, in the library of the folder's name and "_proxies". What is generated is not ours to
# keep free of warnings.
function(pellar_dbus_proxies folder)
    string(REPLACE "/" "_" name ${folder}_proxies)
    set(rest ${ARGN})
    while(rest)
        list(POP_FRONT rest class interface)
        set(description ${PROJECT_SOURCE_DIR}/src/${folder}/${interface}.xml)
        set_source_files_properties(${description} PROPERTIES CLASSNAME ${class} NO_NAMESPACE ON)
        qt_add_dbus_interface(generated ${description} ${class})
    endwhile()
    add_library(${name} STATIC ${generated})
    target_include_directories(${name} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR})
    target_link_libraries(${name} PUBLIC Qt6::DBus)
    if(NOT TARGET dbus_proxies)
        add_custom_target(dbus_proxies) # all of them, for those who read the sources without building them
    endif()
    add_dependencies(dbus_proxies ${name})
endfunction()

# pellar_qml_module(ROOM URI [QML_FILES files…] [DEPENDENCIES uris…]): the room's types, and the files beside the
# CMakeLists.txt that calls it, as a QML module. The dependencies are the modules, besides QtQuick, whose types
# the room's own build on.
function(pellar_qml_module room uri)
    cmake_parse_arguments(ARG "" "" "QML_FILES;DEPENDENCIES" ${ARGN})
    string(REPLACE "." "/" path ${uri})
    qt_add_qml_module(${room}
        URI ${uri}
        VERSION 1.0
        OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/${path}
        IMPORT_PATH ${CMAKE_BINARY_DIR}/qml
        QML_FILES ${ARG_QML_FILES}
        DEPENDENCIES QtQuick ${ARG_DEPENDENCIES}
    )
    # The generated type registration includes the headers by their bare names.
    target_include_directories(${room} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    set_target_properties(${room} PROPERTIES PELLAR_HAS_QML ON)
endfunction()
