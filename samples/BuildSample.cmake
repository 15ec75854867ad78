# Makes one sample database anew: cmake -DQIRDB=... -DTARGET=... -DMAKING=... -DSOURCE=... -DTABLES=... -P BuildSample.cmake

# Made elsewhere, so that a run that fails leaves nothing that looks finished.
get_filename_component(name ${TARGET} NAME)
set(made ${MAKING}/${name})
get_filename_component(folder ${TARGET} DIRECTORY)
file(MAKE_DIRECTORY ${MAKING} ${folder})
file(REMOVE ${made})

function(qirdb)
  execute_process(COMMAND ${QIRDB} ${ARGV} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "qirdb ${ARGV} ended with ${status}")
  endif()
endfunction()

qirdb(create ${made})
foreach(table IN LISTS TABLES)
  qirdb(import ${made} ${table} ${SOURCE}/${table}.csv)
endforeach()
if(EXISTS ${SOURCE}/password.txt)
  qirdb(passwd ${made} --new-password-file ${SOURCE}/password.txt)
endif()
file(RENAME ${made} ${TARGET})
