#include "clip/arguments.h"

#include "clip/number_text.h"

#include <optional>

namespace clip
{

bool Arguments::Read(std::function<bool(std::string_view)> const & readOption)
{
    while (m_Next < m_Arguments.size())
    {
        std::string_view const argument = m_Arguments[m_Next++];
        if (m_AreOptionsOver || argument.size() <= 1 || !argument.starts_with('-'))
        {
            ReadClip(argument);
            continue;
        }
        m_Option = argument;
        if (ReadOption(readOption))
        {
            return true;
        }
    }
    if (m_Clip.empty())
    {
        throw UsageError("no clip given");
    }
    return false;
}

/// \return whether it asks for help
bool Arguments::ReadOption(std::function<bool(std::string_view)> const & readOption)
{
    if (m_Option == "--help" || m_Option == "-h")
    {
        return true;
    }
    if (m_Option == "--")
    {
        m_AreOptionsOver = true;
    }
    else if (!readOption(m_Option.substr(0, m_Option.find('='))))
    {
        throw UsageError("unknown option \"" + std::string(m_Option) + "\"");
    }
    return false;
}

std::string_view Arguments::Value()
{
    if (std::size_t const equals = m_Option.find('='); equals != std::string_view::npos)
    {
        return m_Option.substr(equals + 1);
    }
    if (m_Next == m_Arguments.size())
    {
        throw UsageError("option \"" + std::string(m_Option) + "\" wants a value");
    }
    return m_Arguments[m_Next++];
}

std::filesystem::path Arguments::Path(std::string const & wanted)
{
    std::string_view const value = Value();
    if (value.empty())
    {
        throw UsageError("option \"" + std::string(m_Option.substr(0, m_Option.find('='))) + "\" wants " + wanted);
    }
    return value;
}

unsigned long Arguments::Seed()
{
    constexpr unsigned long long k_LargestSeed = 0xFFFFFFFF;
    std::string_view const value = Value();
    std::optional<unsigned long long> const seed = ParseCount(value);
    if (!seed || *seed > k_LargestSeed)
    {
        throw UsageError("option \"" + std::string(m_Option.substr(0, m_Option.find('='))) +
                         "\" wants a whole number from 0 to 4294967295, not \"" + std::string(value) + "\"");
    }
    return static_cast<unsigned long>(*seed);
}

void Arguments::ReadClip(std::string_view argument)
{
    if (!m_Clip.empty())
    {
        throw UsageError("more than one clip given: \"" + m_Clip.string() + "\" and \"" + std::string(argument) + "\"");
    }
    if (argument.empty())
    {
        throw UsageError("the clip's name is empty");
    }
    m_Clip = argument;
}

} // namespace clip
