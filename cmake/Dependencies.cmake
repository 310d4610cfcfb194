find_package(PkgConfig REQUIRED)

pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0 gio-unix-2.0)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-i18n icu-uc)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0>=2.2)
pkg_check_modules(GTKMM REQUIRED IMPORTED_TARGET gtkmm-3.0)
pkg_check_modules(WEBKIT REQUIRED IMPORTED_TARGET webkit2gtk-4.1>=2.42)
pkg_check_modules(WEBKIT_EXTENSION REQUIRED IMPORTED_TARGET webkit2gtk-web-extension-4.1)
pkg_check_modules(X11 REQUIRED IMPORTED_TARGET x11 xcb cairo-xlib)
