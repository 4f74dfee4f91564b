// Linked into a program only when it is built to look for races: what other people's libraries guard by means
// that are not seen. The C library has a lock of its own around its time zone; FFmpeg, x264, fontconfig and
// HarfBuzz count and publish with atomic numbers; Qt scales large pictures on a pool of threads that it waits
// for with a semaphore of its own, and keeps its list of fonts behind a lock of its own, in frames that the
// search can't follow up to the fonts. The search is in a library of its own and finds the function by its
// name.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions()
{
    return "race:tzset_internal\nrace:libavutil.so\nrace:libavcodec.so\nrace:libx264.so\n"
           "race:libfontconfig.so\nrace:libharfbuzz.so\n"
           "race:libQt5Gui.so\nrace:QThreadPoolPrivate\nrace:QRunnable::create\nrace:QListData::\n";
}
