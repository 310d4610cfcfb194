# Makes `target` out of descriptions of Wayland protocols, FILE...: for each `NAME.xml` a header
# `NAME-client-protocol.h` and the code behind it. Generated code is built without our warnings.
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
function(add_wayland_protocols target)
  set(generated)
  foreach(description ${ARGN})
    get_filename_component(name ${description} NAME_WE)
    set(header ${CMAKE_CURRENT_BINARY_DIR}/protocols/${name}-client-protocol.h)
    set(code ${CMAKE_CURRENT_BINARY_DIR}/protocols/${name}-protocol.c)
    add_custom_command(
      OUTPUT ${header} ${code}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/protocols
      COMMAND ${WAYLAND_SCANNER} client-header ${description} ${header}
      COMMAND ${WAYLAND_SCANNER} private-code ${description} ${code}
      DEPENDS ${description}
      VERBATIM)
    list(APPEND generated ${header} ${code})
  endforeach()
  add_library(${target} STATIC ${generated})
  target_include_directories(${target} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR}/protocols)
  target_link_libraries(${target} PUBLIC PkgConfig::WAYLAND)
endfunction()
