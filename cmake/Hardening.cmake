# What Debian hardens its own packages with. Without optimisation the library's checks do nothing but warn.
set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_compile_options($<${optimised}:-fstack-protector-strong> $<${optimised}:-U_FORTIFY_SOURCE>
                    $<${optimised}:-D_FORTIFY_SOURCE=2> -Wformat -Werror=format-security)
add_link_options(-Wl,-z,relro,-z,now)
# Programs, too, at an address that nobody can foretell.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
