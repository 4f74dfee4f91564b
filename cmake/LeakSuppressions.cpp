// Linked into a program only when it is built to look for leaks: the font library keeps its caches in places
// that the search does not see, and Qt's screen without a display is never given back. The search is in a
// library of its own and finds the function by its name.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libqoffscreen\n";
}
