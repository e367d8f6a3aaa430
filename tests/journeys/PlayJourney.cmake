# Makes a sample district in FOLDER with DISTRICT and plays SCRIPT on it with PLAY and the programs of
# BIN. Fails with the player's status, or where a picture that the script takes is missing.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${BIN}/vireo-district create ${FOLDER}/district COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PLAY} ${BIN} ${FOLDER}/district ${SCRIPT}
  WORKING_DIRECTORY ${FOLDER} COMMAND_ERROR_IS_FATAL ANY)

file(STRINGS ${SCRIPT} shots REGEX "^ *shot ")
foreach(shot IN LISTS shots)
  string(REGEX REPLACE ".* " "" picture "${shot}")
  if(NOT EXISTS ${FOLDER}/${picture})
    message(FATAL_ERROR "${picture} was not taken")
  endif()
endforeach()
