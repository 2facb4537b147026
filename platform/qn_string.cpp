#include "math/platform/qn_string.h"

#include <new>

namespace
{

/// A string that cannot be afforded leaves the target as it was.
void Assign(std::wstring & target, wchar_t const * text)
{
    try
    {
        target.assign(text);
    }
    catch (std::bad_alloc const &)
    {
        return;
    }
}

} // namespace

CQNString::CQNString(wchar_t const * text)
{
    if (text != nullptr)
    {
        Assign(m_text, text);
    }
}

CQNString::CQNString(CQNString const & other) : CQNString(other.GetWideString()) {}

CQNString & CQNString::operator=(CQNString const & other)
{
    if (this != &other)
    {
        Assign(m_text, other.GetWideString());
    }
    return *this;
}

CQNString::~CQNString() = default;

wchar_t const * CQNString::GetWideString() const
{
    return m_text.c_str();
}
