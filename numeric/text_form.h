#pragma once

/// \file
/// The text forms that the value classes share. Width, precision and flags are the stream's own.

#include <cstddef>
#include <istream>
#include <ostream>

namespace math::detail
{

/// Writes the label as narrow text on a line of its own. A null label writes nothing, and so does one for which there
/// is no memory.
void WriteLabel(wchar_t const * label, std::ostream & stream);

/// Writes "( a b c )".
template <typename T>
void WriteRow(std::ostream & stream, T const * values, std::size_t count)
{
    stream << "( ";
    for (std::size_t i = 0; i < count; ++i)
    {
        stream << values[i] << ' ';
    }
    stream << ')';
}

/// Writes the rows of a square array, with an end of line between them.
template <typename T>
void WriteRows(std::ostream & stream, T const * values, std::size_t size)
{
    for (std::size_t row = 0; row < size; ++row)
    {
        if (row != 0)
        {
            stream << '\n';
        }
        WriteRow(stream, values + row * size, size);
    }
}

/// Reads bare numbers, all of them before the first is stored. The stream's state is not looked at: a number that could
/// not be read is stored as the extraction left it.
template <std::size_t Count, typename T>
void ReadNumbers(std::istream & stream, T * values)
{
    T read[Count] = {};
    for (T & value : read)
    {
        stream >> value;
    }
    for (std::size_t i = 0; i < Count; ++i)
    {
        values[i] = read[i];
    }
}

/// Prints a label, a value and the closing line that holds one blank.
template <typename Value>
void DumpWithBlankLine(wchar_t const * label, std::ostream & stream, Value const & value)
{
    WriteLabel(label, stream);
    stream << value << "\n \n";
}

} // namespace math::detail
