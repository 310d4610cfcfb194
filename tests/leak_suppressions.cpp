// What the leak sanitizer must not hold against the tests: Pango and fontconfig keep fonts for the life of the process,
// and a program of ten lines that draws with Pango alone is blamed for it, too.

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the sanitizer's name for it
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
