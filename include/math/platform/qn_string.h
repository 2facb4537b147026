#pragma once

/// \file
/// The package's string.

#include "math/api.h"

#include <string>

/// An immutable wide text. Copies are independent. Where memory is short, construction gives an empty text and
/// assignment keeps the former one; nothing is thrown.
class MATH_API CQNString
{
public:
    /// Copies text that ends with a zero; null gives an empty text.
    CQNString(wchar_t const * text); // NOLINT(google-explicit-constructor): text passes where a string is wanted

    /// Copies are independent. Where memory is short, the new text is empty, and an assigned one stays as it was.
    ///@{
    CQNString(CQNString const & other);
    CQNString & operator=(CQNString const & other);
    ///@}

    /// Frees the text.
    ~CQNString();

    /// The text with its closing zero; never null. Valid until the string is assigned to or destroyed.
    wchar_t const * GetWideString() const;

private:
    std::wstring m_text;
};
