cmake_minimum_required(VERSION 3.25)
# The rules of the house that include roots alone cannot hold, checked over the whole tree:
#   - no include climbs out of its folder with "../";
#   - the modules below the windows (src/ outside ui/ and app/) include Qt's core headers only:
#     no widget, no GUI header, however it is spelt;
#   - the simulated programmer and the serial driver include their own headers, the public driver
#     interface and Qt only (the serial driver's protocol folder is its own too).
# cmake -DSOURCE_DIR=... -DQTCORE_DIR=... -P HouseRules.cmake; fails listing every violation.
file(GLOB core_headers RELATIVE ${QTCORE_DIR} ${QTCORE_DIR}/*)
set(violations "")

function(check_file file)
    file(RELATIVE_PATH relative ${SOURCE_DIR} ${file})
    file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include")
    set(found "")
    foreach(line IN LISTS lines)
        if(line MATCHES "#[ \t]*include[ \t]*[\"<]\\.\\./")
            list(APPEND found "${relative}: climbs out of its folder: ${line}")
        endif()
        if(relative MATCHES "^src/" AND NOT relative MATCHES "^src/(ui|app)/")
            if(line MATCHES "<(Qt[A-Za-z]+)/" AND NOT CMAKE_MATCH_1 STREQUAL "QtCore")
                list(APPEND found "${relative}: a ${CMAKE_MATCH_1} header below the windows: ${line}")
            elseif(line MATCHES "<(Q[A-Za-z0-9_]*)>" AND NOT CMAKE_MATCH_1 IN_LIST core_headers)
                list(APPEND found "${relative}: not a QtCore header, below the windows: ${line}")
            endif()
        endif()
        if(relative MATCHES "^drivers/(sim|serial)/" AND line MATCHES "#[ \t]*include[ \t]*\"([^\"]+)\"")
            set(included ${CMAKE_MATCH_1})
            string(REGEX MATCH "^drivers/([a-z]+)/" driver_dir ${relative})
            set(own ${CMAKE_MATCH_1})
            if(NOT included MATCHES "^(${own}|rk31)/" AND NOT included MATCHES "\\.moc$")
                list(APPEND found "${relative}: not the driver's own, nor the public one: ${line}")
            endif()
        endif()
        # The serial driver's protocol is shared with the box's side: Qt and the public interface.
        if(relative MATCHES "^drivers/serial/protocol/" AND line MATCHES "#[ \t]*include[ \t]*\"(serial/[^\"]+)\"")
            if(NOT CMAKE_MATCH_1 MATCHES "^serial/protocol/")
                list(APPEND found "${relative}: the protocol includes the driver: ${line}")
            endif()
        endif()
    endforeach()
    set(violations ${violations} ${found} PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE files
     ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.h
     ${SOURCE_DIR}/drivers/*.cpp ${SOURCE_DIR}/drivers/*.h
     ${SOURCE_DIR}/include/*.h
     ${SOURCE_DIR}/tests/*.cpp ${SOURCE_DIR}/tests/*.h
     ${SOURCE_DIR}/tools/*.cpp ${SOURCE_DIR}/tools/*.h
     ${SOURCE_DIR}/bench/*.cpp ${SOURCE_DIR}/bench/*.h
     ${SOURCE_DIR}/fuzz/*.cpp ${SOURCE_DIR}/fuzz/*.h)
foreach(file IN LISTS files)
    check_file(${file})
endforeach()

if(violations)
    list(JOIN violations "\n" text)
    message(FATAL_ERROR "house rules broken:\n${text}")
endif()
list(LENGTH files count)
message(STATUS "house rules hold in ${count} files")
