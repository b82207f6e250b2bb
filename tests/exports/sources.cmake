# Also built by tests/install/consumer, against the installed library.
set(exports_sources)
foreach(name container file foundation json main ome prop remote si stack)
  list(APPEND exports_sources ${CMAKE_CURRENT_LIST_DIR}/${name}.cpp)
endforeach()
