# What makes a fault in the code harder to use against its user. Programs are position independent, their tables of
# addresses are read-only before the first line of theirs runs, and copies are checked where their room is known.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# qir_harden(TARGET): for whatever links the interface library TARGET.
function(qir_harden target)
  target_compile_options(${target} INTERFACE -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(${target} INTERFACE -fcf-protection)
  endif()
  target_link_options(${target} INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  # The checks of copies need the optimiser; a sanitizer has better ones of its own.
  if(NOT QIR_SANITIZE)
    target_compile_options(${target} INTERFACE
      $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
      $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=3>)
  endif()
endfunction()
