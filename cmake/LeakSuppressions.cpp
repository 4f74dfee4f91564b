// Linked into a program only when it is built to look for leaks: the font library keeps its caches in places
// that the search does not see, and Qt's screen without a display is never given back. The search is in a
// library of its own and finds the functions by their names. What was forgiven is not printed, since tests
// compare all that a program says. A QLineEdit that is destroyed while its button fades leaves the animation.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libqoffscreen\nleak:QPropertyAnimation::QPropertyAnimation\n";
}

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_options();

extern "C" const char* __lsan_default_options()
{
    return "print_suppressions=0";
}
