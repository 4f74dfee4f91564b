#pragma once

// How a symbol leaves or enters a shared library, for every library of this tree. Each library has a header
// of its own that picks one of the two by the macro that its own build sets.
#if defined(_WIN32)
#define ZELL_SYMBOL_EXPORT __declspec(dllexport)
#define ZELL_SYMBOL_IMPORT __declspec(dllimport)
#else
#define ZELL_SYMBOL_EXPORT __attribute__((visibility("default")))
#define ZELL_SYMBOL_IMPORT __attribute__((visibility("default")))
#endif

// Where compilers want the mark of a template whose one instantiation is exported: MSVC on the definition of
// the instantiation; the others before, since the instantiation is a base and its own mark would come too
// late: for ELF on the template itself, GCC for Windows on each of its data members. A function that is
// written in the template leaves no library of GCC for Windows: every caller has a copy.
#if defined(_MSC_VER)
#define ZELL_TEMPLATE_VISIBLE
#define ZELL_TEMPLATE_MEMBER
#define ZELL_TEMPLATE_FUNCTION
#define ZELL_INSTANCE_DEFINED ZELL_SYMBOL_EXPORT
#elif defined(_WIN32)
#define ZELL_TEMPLATE_VISIBLE
#define ZELL_TEMPLATE_MEMBER ZELL_SYMBOL_EXPORT
#define ZELL_TEMPLATE_FUNCTION __attribute__((always_inline))
#define ZELL_INSTANCE_DEFINED
#else
#define ZELL_TEMPLATE_VISIBLE ZELL_SYMBOL_EXPORT
#define ZELL_TEMPLATE_MEMBER
#define ZELL_TEMPLATE_FUNCTION
#define ZELL_INSTANCE_DEFINED
#endif

#if defined(ZELLBASE_BUILD)
#define ZELLBASE_API ZELL_SYMBOL_EXPORT
#else
#define ZELLBASE_API ZELL_SYMBOL_IMPORT
#endif

// The position of a printf format and of its first argument, for the compiler's check.
#if defined(__MINGW32__)
// The standard library is built for the formats of the C standard, not for those of the system.
#define ZELL_PRINTF(format_index, first_index) __attribute__((format(gnu_printf, format_index, first_index)))
#elif defined(__GNUC__)
#define ZELL_PRINTF(format_index, first_index) __attribute__((format(printf, format_index, first_index)))
#else
#define ZELL_PRINTF(format_index, first_index)
#endif

// For a constructor that turns itself into the class that is derived from it: a sanitizer would look for that
// class's table of virtual functions, which is not in place yet.
#if defined(__GNUC__)
#define ZELL_NO_VPTR_CHECK __attribute__((no_sanitize("vptr")))
#else
#define ZELL_NO_VPTR_CHECK
#endif
