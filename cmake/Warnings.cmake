# The warnings that every target of ours is built with. Other people's headers are system headers and stay out of it.
add_library(tavelle_warnings INTERFACE)
target_compile_options(
  tavelle_warnings
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
# And the rest, for all that runs in processes of our own.
add_library(tavelle_flags INTERFACE)
target_link_libraries(tavelle_flags INTERFACE tavelle_warnings)
if(TAVELLE_SANITIZE)
  target_compile_options(tavelle_flags INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
  target_compile_definitions(tavelle_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(tavelle_flags INTERFACE -fsanitize=address,undefined)
endif()
