# A house of three rooms, sound at first; each fault seeded into it has to be named by CHECK.
function(build)
  file(REMOVE_RECURSE ${FOLDER})
  file(WRITE ${FOLDER}/base/text.h "")
  file(WRITE ${FOLDER}/runs/run.h "#include \"base/text.h\"\n")
  file(WRITE ${FOLDER}/runs/run.cpp "#include \"runs/run.h\"\n#include <vector>\n")
  file(WRITE ${FOLDER}/runs/editor.h "#include \"runs/run.h\"\n")
  file(WRITE ${FOLDER}/runs/editor.cpp "#include \"runs/editor.h\"\n#include \"ui_editor.h\"\n")
  file(WRITE ${FOLDER}/runs/editor.ui "<ui>\n <header>base/text.h</header>\n</ui>\n")
  file(WRITE ${FOLDER}/main/main.cpp "#include \"runs/editor.h\"\n")
endfunction()

function(check expected)
  set(runs)
  foreach(file run.h run.cpp)
    list(APPEND runs ${FOLDER}/runs/${file})
  endforeach()
  set(forms)
  foreach(file editor.h editor.cpp editor.ui)
    list(APPEND forms ${FOLDER}/runs/${file})
  endforeach()
  list(JOIN runs "," runs)
  list(JOIN forms "," forms)
  file(WRITE ${FOLDER}.txt "base||${FOLDER}/base/text.h\nruns|base|${runs}\n"
    "runs_forms|runs,Qt6::Widgets|${forms}\nprogram|runs_forms|${FOLDER}/main/main.cpp\n")
  execute_process(COMMAND ${CMAKE_COMMAND} -DTABLE=${FOLDER}.txt -DROOT=${FOLDER} -P ${CHECK}
    RESULT_VARIABLE failed ERROR_VARIABLE said OUTPUT_QUIET)
  if(expected STREQUAL "" AND failed)
    message(SEND_ERROR "A sound house is refused: ${said}")
  elseif(NOT expected STREQUAL "" AND NOT said MATCHES "${expected}")
    message(SEND_ERROR "Not named: ${expected}\nbut: ${said}")
  endif()
endfunction()

build()
check("")

# A core includes a form's header of its own folder.
file(APPEND ${FOLDER}/runs/run.cpp "#include \"runs/editor.h\"\n")
check("runs/run.cpp includes runs/editor.h")

# A header without a source, in angle brackets, includes upwards: that is a circle too.
build()
file(APPEND ${FOLDER}/base/text.h "  #  include <runs/run.h>\n")
check("base/text.h includes runs/run.h")
check("in a circle[^\n]*base")

# A form's control comes from a room above.
build()
file(WRITE ${FOLDER}/runs/editor.ui "<ui>\n <header>main/list.h</header>\n</ui>\n")
file(WRITE ${FOLDER}/main/list.h "")
check("main/list.h belongs to no target")

# An include by a short path would not be looked up at all.
build()
file(APPEND ${FOLDER}/runs/run.h "#include \"../main/main.cpp\"\n")
check("runs/run.h includes \"../main/main.cpp\"")

# A room inside a room.
build()
file(WRITE ${FOLDER}/runs/times/gap.h "")
check("runs has files, though runs/times")
