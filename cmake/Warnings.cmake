# The flags that every target of ours is built with. Other people's headers are system headers and stay out of it.
add_library(tavelle_flags INTERFACE)
target_compile_options(
  tavelle_flags
  INTERFACE -Wall
            -Wextra
            -Wshadow
            -Wconversion
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wsuggest-override
            -Wduplicated-cond
            -Wlogical-op
            $<$<BOOL:${TAVELLE_WERROR}>:-Werror>)
if(TAVELLE_SANITIZE)
  target_compile_options(tavelle_flags INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
  target_compile_definitions(tavelle_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(tavelle_flags INTERFACE -fsanitize=address,undefined)
endif()
