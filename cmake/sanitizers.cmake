# Sanitizers hold for every target of the build, so that the library, its users and its tests agree.
if(VRELIO_SANITIZE)
  add_compile_options(-fsanitize=${VRELIO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VRELIO_SANITIZE})
endif()
