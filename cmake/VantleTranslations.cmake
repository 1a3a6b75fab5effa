# SPDX-License-Identifier: MIT
# The texts of the program in other languages.

# Compiles the translations of all texts in the given rooms into a target, as
# :/i18n/vantle_<language>.qm. `cmake --build --target update_translations`
# gathers the texts anew. A .ts file must exist when CMake is run: for a missing
# one, lupdate would be run without any source.
function(vantle_add_translations target)
    cmake_parse_arguments(ARG "" "" "ROOMS;LANGUAGES" ${ARGN})
    set(sources "${PROJECT_SOURCE_DIR}/main.cpp")
    foreach(room IN LISTS ARG_ROOMS)
        get_target_property(names ${room} SOURCES)
        get_target_property(folder ${room} SOURCE_DIR)
        foreach(name IN LISTS names)
            if(name MATCHES "\\.(cpp|h)$" AND NOT IS_ABSOLUTE "${name}")
                list(APPEND sources "${folder}/${name}")
            endif()
        endforeach()
    endforeach()
    set(files "")
    foreach(language IN LISTS ARG_LANGUAGES)
        list(APPEND files "${PROJECT_SOURCE_DIR}/Resources/translations/vantle_${language}.ts")
    endforeach()
    qt_add_translations(${target}
        TS_FILES ${files}
        SOURCES ${sources}
        RESOURCE_PREFIX "/i18n"
        LUPDATE_OPTIONS -no-obsolete -locations none)

    # Every text has a translation that is done: the check gathers the texts into a
    # copy, so that it finds those that nobody has gathered yet.
    string(REPLACE ";" "\n" listed "${sources}")
    file(WRITE "${PROJECT_BINARY_DIR}/translated-sources.txt" "${listed}\n")
    foreach(file IN LISTS files)
        get_filename_component(name "${file}" NAME_WE)
        add_test(NAME "Resources/${name}"
            COMMAND "${PROJECT_SOURCE_DIR}/script/check-translation" $<TARGET_FILE:Qt6::lupdate>
                "${PROJECT_BINARY_DIR}/translated-sources.txt" "${file}")
    endforeach()
endfunction()
