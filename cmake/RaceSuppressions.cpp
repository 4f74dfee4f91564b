// Linked into a program only when it is built to look for races: the C library guards its time zone with a lock of its
// own that is not seen. The search is in a library of its own and finds the function by its name.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions()
{
    return "race:tzset_internal\n";
}
