# SPDX-License-Identifier: MIT
# cmake -D TREE=FOLDER -P licence_lines.cmake: fails when a source file of the tree does not begin with its licence. Only
# a line that has to be the first, an interpreter's or a document type, may stand before it.

set(files "${TREE}/CMakeLists.txt" "${TREE}/dev" "${TREE}/docs/Doxyfile")
foreach(folder KXFoundation bench cmake designer docs examples fuzz tests tools)
    foreach(kind CMakeLists.txt *.awk *.c *.cmake *.cpp *.css *.h *.html *.in *.js *.mjs *.qrc *.sh *.supp *.ui)
        file(GLOB_RECURSE found "${TREE}/${folder}/${kind}")
        list(APPEND files ${found})
    endforeach()
endforeach()
list(FILTER files EXCLUDE REGEX "/node_modules/|/fuzz/corpus/")

set(faults 0)
foreach(file ${files})
    file(READ "${file}" start LIMIT 200)
    if(NOT start MATCHES "^((#!|<!)[^\n]*\n)?[^\n]* SPDX-License-Identifier: MIT")
        message(SEND_ERROR "${file} does not begin with its licence")
        math(EXPR faults "${faults} + 1")
    endif()
endforeach()
list(LENGTH files count)
message("${count} files, ${faults} without their licence")
