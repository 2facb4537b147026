#include "examples/xml_check.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <vector>

namespace
{

class XmlChecker
{
public:
    explicit XmlChecker(std::string_view text) : m_Rest(text) {}

    std::string FindFault()
    {
        if (!m_Rest.starts_with("<"))
        {
            return "no element at the start";
        }
        bool isFirst = true;
        while (!m_Rest.empty() && m_Fault.empty())
        {
            if (m_Rest.starts_with("<"))
            {
                if (!isFirst && m_Open.empty())
                {
                    return "a second root";
                }
                isFirst = false;
                ReadTag();
            }
            else
            {
                ReadText();
            }
        }
        if (m_Fault.empty() && !m_Open.empty())
        {
            return "open at the end: " + m_Open.back();
        }
        return m_Fault;
    }

private:
    static bool IsNameCharacter(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == ':';
    }

    std::string TakeName()
    {
        auto const length =
            static_cast<std::size_t>(std::find_if_not(m_Rest.begin(), m_Rest.end(), IsNameCharacter) - m_Rest.begin());
        std::string name(m_Rest.substr(0, length));
        m_Rest.remove_prefix(length);
        if (name.empty())
        {
            m_Fault = "a name is missing";
        }
        return name;
    }

    bool Take(std::string_view text)
    {
        bool const isThere = m_Rest.starts_with(text);
        m_Rest.remove_prefix(isThere ? text.size() : 0);
        return isThere;
    }

    void ReadTag()
    {
        if (Take("</"))
        {
            std::string const name = TakeName();
            if (m_Open.empty() || m_Open.back() != name || !Take(">"))
            {
                m_Fault = "closes what is not open: " + name;
                return;
            }
            m_Open.pop_back();
            return;
        }
        Take("<");
        std::string const name = TakeName();
        std::set<std::string> attributes;
        while (m_Fault.empty() && Take(" "))
        {
            ReadAttribute(attributes);
        }
        if (!m_Fault.empty() || Take("/>"))
        {
            return;
        }
        if (!Take(">"))
        {
            m_Fault = "an unfinished tag: " + name;
        }
        m_Open.push_back(name);
    }

    void ReadAttribute(std::set<std::string> & earlier)
    {
        std::string const name = TakeName();
        if (!earlier.insert(name).second)
        {
            m_Fault = "an attribute twice: " + name;
        }
        if (!Take("=\""))
        {
            m_Fault = "an attribute without a value: " + name;
            return;
        }
        std::size_t const end = std::min(m_Rest.find('"'), m_Rest.size());
        CheckText(m_Rest.substr(0, end));
        m_Rest.remove_prefix(end);
        if (!Take("\""))
        {
            m_Fault = "a value without an end: " + name;
        }
    }

    void ReadText()
    {
        std::size_t const end = std::min(m_Rest.find('<'), m_Rest.size());
        std::string_view const text = m_Rest.substr(0, end);
        if (m_Open.empty() && text.find_first_not_of("\n ") != std::string_view::npos)
        {
            m_Fault = "text outside of the root";
        }
        CheckText(text);
        m_Rest.remove_prefix(end);
    }

    void CheckText(std::string_view text)
    {
        constexpr std::array<std::string_view, 4> k_References = {"&amp;", "&lt;", "&gt;", "&quot;"};
        for (std::size_t i = 0; i < text.size(); ++i)
        {
            char const c = text[i];
            std::string_view const rest = text.substr(i);
            bool const isReference = std::any_of(k_References.begin(), k_References.end(),
                                                 [rest](std::string_view known) { return rest.starts_with(known); });
            if ((c == '&' && !isReference) || c == '<')
            {
                m_Fault = "markup in text: " + std::string(rest.substr(0, 12));
            }
            if (static_cast<unsigned char>(c) < 0x20 && c != '\n')
            {
                m_Fault = "a control character in text";
            }
        }
    }

    std::string_view m_Rest;
    std::vector<std::string> m_Open;
    std::string m_Fault;
};

} // namespace

std::string FindXmlFault(std::string_view text)
{
    return XmlChecker(text).FindFault();
}
