#pragma once

#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>

/// Proves that a function lives in the shared library: its address, taken in a program that inlines nothing, lies in
/// libmath.so. Where the library does not export it, the program does not even link.
namespace exported
{

inline void ExpectInLibrary(void const * address, int line)
{
    Dl_info info{};
    ASSERT_NE(dladdr(address, &info), 0) << "line " << line;
    EXPECT_NE(std::string(info.dli_fname).find("libmath.so"), std::string::npos)
        << "line " << line << ": the function lies in " << info.dli_fname;
}

/// A member function that is not virtual; the signature selects the overload.
template <typename Signature, typename Class>
void Member(Signature Class::*member, int line = __builtin_LINE())
{
    void const * address = nullptr;
    static_assert(sizeof member >= sizeof address);
    std::memcpy(&address, &member, sizeof address);
    ExpectInLibrary(address, line);
}

/// A free or static function.
template <typename Signature>
void Function(Signature * function, int line = __builtin_LINE())
{
    void const * address = nullptr;
    std::memcpy(&address, &function, sizeof address);
    ExpectInLibrary(address, line);
}

/// A data member of a class, or a constant.
template <typename Object>
void Data(Object const & object, int line = __builtin_LINE())
{
    ExpectInLibrary(&object, line);
}

/// A constructor has no address to take; that the program links is the proof.
template <typename Class, typename... Arguments>
void Constructor(Arguments &&... arguments)
{
    Class const object(std::forward<Arguments>(arguments)...);
    static_cast<void>(object);
}

} // namespace exported
