#pragma once

#include "ZellBase/Log.h"

#include <cstddef>
#include <string_view>

// One macro for each level. A call gives the text and its arguments; the macro puts "[function]" in front and
// "[file(line)]" behind. The whole format stays one literal, so the compiler checks it against the arguments.
#define LogInfo(...) FETCHYARD_LOG(::Zell::Base::details::kLogInfo, __VA_ARGS__)
#define LogWarning(...) FETCHYARD_LOG(::Zell::Base::details::kLogWarning, __VA_ARGS__)
#define LogError(...) FETCHYARD_LOG(::Zell::Base::details::kLogError, __VA_ARGS__)

#if defined(__GNUC__)
#define FETCHYARD_SIGNATURE __PRETTY_FUNCTION__
#else
#define FETCHYARD_SIGNATURE __FUNCSIG__
#endif

#define FETCHYARD_LOG_WRITE(level, ...)                                                                     \
    do {                                                                                                    \
        static constexpr auto fetchyard_function =                                                          \
            ::FetchyardBussiness::details::QualifiedName(FETCHYARD_SIGNATURE);                              \
        ::Zell::Base::details::IOXTFormatLog(level, "FetchyardBussiness", __VA_ARGS__, __FILE__, __LINE__); \
    } while (false)
#define FETCHYARD_LOG_TEXT(level, format) \
    FETCHYARD_LOG_WRITE(level, "[%s]" format "[%s(%d)]", fetchyard_function.text)
#define FETCHYARD_LOG_VALUES(level, format, ...) \
    FETCHYARD_LOG_WRITE(level, "[%s]" format "[%s(%d)]", fetchyard_function.text, __VA_ARGS__)

// A text alone and a text with values need different commas, which this standard has no portable word for:
// the number of arguments picks the form.
#define FETCHYARD_LOG_EXPAND(x) x
#define FETCHYARD_LOG_PICK(a1, a2, a3, a4, a5, a6, a7, a8, picked, ...) picked
#define FETCHYARD_LOG(level, ...)                                                                         \
    FETCHYARD_LOG_EXPAND(                                                                                 \
        FETCHYARD_LOG_PICK(__VA_ARGS__, FETCHYARD_LOG_VALUES, FETCHYARD_LOG_VALUES, FETCHYARD_LOG_VALUES, \
                           FETCHYARD_LOG_VALUES, FETCHYARD_LOG_VALUES, FETCHYARD_LOG_VALUES,              \
                           FETCHYARD_LOG_VALUES, FETCHYARD_LOG_TEXT, 0)(level, __VA_ARGS__))

namespace FetchyardBussiness::details {

template <std::size_t N>
struct FunctionName
{
    char text[N] = {};
};

// Position of the parenthesis that opens the parameter list. Compilers write unnamed namespaces with one of
// their own, which is passed over.
constexpr std::size_t ParameterListStart(std::string_view signature)
{
    constexpr std::string_view unnamed = "(anonymous namespace)";
    std::size_t at = 0;
    int depth = 0;
    while (at < signature.size()) {
        if (signature.substr(at, unnamed.size()) == unnamed) {
            at += unnamed.size();
            continue;
        }
        if (signature[at] == '(' && depth == 0)
            return at;
        if (signature[at] == '<')
            ++depth;
        if (signature[at] == '>')
            --depth;
        ++at;
    }
    return signature.size();
}

// Position behind the last blank that separates the return type from the name.
constexpr std::size_t NameStart(std::string_view declaration)
{
    std::size_t start = 0;
    int depth = 0;
    for (std::size_t at = 0; at < declaration.size(); ++at) {
        if (declaration[at] == '<' || declaration[at] == '(')
            ++depth;
        if (declaration[at] == '>' || declaration[at] == ')')
            --depth;
        if (declaration[at] == ' ' && depth == 0)
            start = at + 1;
    }
    while (start < declaration.size() && (declaration[start] == '*' || declaration[start] == '&'))
        ++start;
    return start;
}

// Length of the compiler's word for an unnamed namespace, with its "::", at the head of the text; 0 if the
// text starts with something else.
constexpr std::size_t UnnamedNamespaceLength(std::string_view text)
{
    constexpr std::string_view words[] = {
        "{anonymous}::", "(anonymous namespace)::", "`anonymous-namespace'::"};
    for (const std::string_view word : words) {
        if (text.substr(0, word.size()) == word)
            return word.size();
    }
    return 0;
}

// The qualified name of a function out of the compiler's text for its signature, worked out while compiling.
template <std::size_t N>
constexpr FunctionName<N> QualifiedName(const char (&signature)[N])
{
    std::string_view name(signature, N - 1);
    name = name.substr(0, ParameterListStart(name));
    name = name.substr(NameStart(name));
    FunctionName<N> result;
    std::size_t length = 0;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t unnamed = UnnamedNamespaceLength(name.substr(at));
        if (unnamed > 0)
            at += unnamed;
        else
            result.text[length++] = name[at++];
    }
    return result;
}

}  // namespace FetchyardBussiness::details
