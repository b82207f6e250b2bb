# Counts which lines and branches the tests reach. Without optimisation, which would move and merge them.
if(VRELIO_COVERAGE)
  add_compile_options(--coverage -fprofile-abs-path -fprofile-update=single)
  add_link_options(--coverage)
endif()
