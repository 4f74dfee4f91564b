// Linked into the program only when it is built to look for leaks: the font library keeps its caches in
// places that the search does not see. The search is in a library of its own and finds the function by its
// name.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}
