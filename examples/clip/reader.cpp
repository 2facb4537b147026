#include "clip/reader.h"

#include "clip/input.h"
#include "clip/number_text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace clip
{

namespace
{

bool IsLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\f' || c == '\v' || IsLineEnd(c);
}

bool IsControl(char c)
{
    return (static_cast<unsigned char>(c) < 0x20 && !IsBlank(c)) || c == 0x7f;
}

bool EqualWords(std::string_view a, std::string_view b)
{
    auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [lower](char x, char y) { return lower(x) == lower(y); });
}

/// A word as a message shows it: quoted, and cut where it is long.
std::string Quoted(std::string_view word)
{
    constexpr std::size_t k_MostShown = 40;
    if (word.empty())
    {
        return "the end of the file";
    }
    std::string text = "\"";
    text += word.substr(0, k_MostShown);
    return text + (word.size() > k_MostShown ? "...\"" : "\"");
}

/// Parts a text into words and braces, and counts lines.
class Words
{
public:
    Words(std::string_view text, std::string const & name) : m_Text(text), m_Name(name)
    {
        if (m_Text.starts_with("\xEF\xBB\xBF"))
        {
            m_Text.remove_prefix(3);
        }
    }

    /// The next word or brace; empty at the end of the text.
    std::string_view Next()
    {
        while (m_Place < m_Text.size() && IsBlank(m_Text[m_Place]))
        {
            Step();
        }
        return TakeWord();
    }

    /// The next word of the same line; empty where the line has no more.
    std::string_view NextOfLine()
    {
        while (m_Place < m_Text.size() && IsBlank(m_Text[m_Place]) && !IsLineEnd(m_Text[m_Place]))
        {
            Step();
        }
        return TakeWord();
    }

    /// The next word, still to be taken.
    std::string_view Peek()
    {
        Words ahead = *this;
        return ahead.Next();
    }

    std::string_view Expect(std::string_view word, std::string_view where = {})
    {
        std::string_view const found = Next();
        if (!EqualWords(found, word))
        {
            Fail("expected " + Quoted(word) + std::string(where) + ", found " + Quoted(found));
        }
        return found;
    }

    /// A length, an angle or a time: finite and not beyond `k_LargestNumber`.
    double ToNumber(std::string_view word) const
    {
        std::optional<double> const number = ParseNumber(word);
        if (!number)
        {
            Fail("expected a number, found " + Quoted(word));
        }
        if (!(std::abs(*number) <= k_LargestNumber))
        {
            Fail("the number " + Quoted(word) + " is out of range");
        }
        return *number;
    }

    std::size_t BytesLeft() const { return m_Text.size() - m_Place; }

    /// Blames the line of the last word taken: at the end of a text that is where a reader looks.
    [[noreturn]] void Fail(std::string const & message) const { throw FormatError(m_Name, m_WordLine, message); }

private:
    void Step()
    {
        char const c = m_Text[m_Place++];
        bool const isFirstOfPair = c == '\r' && m_Place < m_Text.size() && m_Text[m_Place] == '\n';
        m_Line += IsLineEnd(c) && !isFirstOfPair ? 1 : 0;
    }

    std::string_view TakeWord()
    {
        auto const isBrace = [](char c) { return c == '{' || c == '}'; };
        std::size_t const start = m_Place;
        if (start < m_Text.size() && !IsBlank(m_Text[start]))
        {
            m_WordLine = m_Line;
        }
        while (m_Place < m_Text.size() && !IsBlank(m_Text[m_Place]))
        {
            if (IsControl(m_Text[m_Place]))
            {
                Fail("found a byte that is no text: is this a BVH file?");
            }
            if (isBrace(m_Text[m_Place]))
            {
                m_Place += m_Place == start ? 1 : 0;
                break;
            }
            ++m_Place;
        }
        return m_Text.substr(start, m_Place - start);
    }

    std::string_view m_Text;
    std::string const & m_Name;
    std::size_t m_Place = 0;
    std::size_t m_Line = 1;
    std::size_t m_WordLine = 1;
};

/// Reads the joints. The open ones stand on a stack of their own, so that a hostile depth of nesting costs no more than
/// its text.
class HierarchyReader
{
public:
    explicit HierarchyReader(Words & words) : m_Words(words) {}

    /// Up to and including `MOTION`.
    Skeleton Read()
    {
        m_Words.Expect("HIERARCHY");
        for (;;)
        {
            std::string_view const word = m_Words.Next();
            if (m_Open.empty())
            {
                if (EqualWords(word, "MOTION") && !m_Skeleton.joints.empty())
                {
                    return std::move(m_Skeleton);
                }
                ReadBetweenRoots(word);
            }
            else
            {
                ReadInsideJoint(word);
            }
        }
    }

private:
    struct OpenJoint
    {
        int index;
        bool hasOffset = false;
        bool hasChannels = false;
        bool hasChildren = false;
    };

    Joint & Current() { return m_Skeleton.joints[static_cast<std::size_t>(m_Open.back().index)]; }

    void ReadBetweenRoots(std::string_view word)
    {
        if (!EqualWords(word, "ROOT"))
        {
            m_Words.Fail((m_Skeleton.joints.empty() ? R"(expected "ROOT", found )"
                                                    : R"(expected "MOTION" or another "ROOT", found )") +
                         Quoted(word));
        }
        OpenNamed();
    }

    void ReadInsideJoint(std::string_view word)
    {
        if (word == "}")
        {
            Close();
        }
        else if (EqualWords(word, "OFFSET"))
        {
            ReadOffset();
        }
        else if (EqualWords(word, "CHANNELS") && !Current().isEndSite)
        {
            ReadChannels();
        }
        else if (EqualWords(word, "JOINT") && !Current().isEndSite)
        {
            OpenNamed();
        }
        else if (EqualWords(word, "End") && !Current().isEndSite)
        {
            m_Words.Expect("Site", " after \"End\"");
            OpenEndSite();
        }
        else
        {
            m_Words.Fail((Current().isEndSite ? R"(expected "OFFSET" or "}" in an end site, found )"
                                              : R"(expected "OFFSET", "CHANNELS", "JOINT", "End Site" or "}", )"
                                                "found ") +
                         Quoted(word));
        }
    }

    void OpenNamed()
    {
        std::string_view const name = m_Words.Next();
        if (name.empty() || name == "{" || name == "}")
        {
            m_Words.Fail("expected a joint's name, found " + Quoted(name));
        }
        // End sites repeat their parent's name, so that a long one would multiply.
        if (name.size() > k_LongestName)
        {
            m_Words.Fail("the joint's name " + Quoted(name) + " is longer than " + std::to_string(k_LongestName) +
                         " bytes");
        }
        m_Words.Expect("{", " after the joint's name");
        Joint joint;
        joint.name = name;
        Open(std::move(joint));
    }

    void OpenEndSite()
    {
        m_Words.Expect("{", " after \"End Site\"");
        Joint site;
        site.name = Current().name + "_end";
        site.isEndSite = true;
        Open(std::move(site));
    }

    void Open(Joint joint)
    {
        if (!m_Open.empty())
        {
            joint.parent = m_Open.back().index;
            m_Open.back().hasChildren = true;
        }
        m_Open.push_back({AddJoint(m_Skeleton, std::move(joint))});
    }

    void Close()
    {
        if (!m_Open.back().hasOffset)
        {
            m_Words.Fail("the joint " + Quoted(Current().name) + " has no \"OFFSET\"");
        }
        m_Open.pop_back();
    }

    void ReadOffset()
    {
        if (std::exchange(m_Open.back().hasOffset, true))
        {
            m_Words.Fail("the joint " + Quoted(Current().name) + " has a second \"OFFSET\"");
        }
        C3DVector3Tpl<double> & offset = Current().offset;
        for (double * const coordinate : {&offset.X, &offset.Y, &offset.Z})
        {
            *coordinate = m_Words.ToNumber(m_Words.Next());
        }
    }

    void ReadChannels()
    {
        // The motion lists channels in the order of their lines, which is that of the joints only if this holds.
        if (m_Open.back().hasChildren)
        {
            m_Words.Fail("the \"CHANNELS\" of the joint " + Quoted(Current().name) + " stand behind its children");
        }
        if (std::exchange(m_Open.back().hasChannels, true))
        {
            m_Words.Fail("the joint " + Quoted(Current().name) + " has a second \"CHANNELS\"");
        }
        std::string_view const word = m_Words.Next();
        std::optional<unsigned long long> const count = ParseCount(word);
        if (!count || *count > k_ChannelKinds)
        {
            m_Words.Fail("expected a number of channels from 0 to 6, found " + Quoted(word));
        }
        for (unsigned long long i = 0; i < *count; ++i)
        {
            Current().channels.push_back(ReadChannel());
        }
        m_Skeleton.channelCount += Current().channels.size();
    }

    Channel ReadChannel()
    {
        std::string_view const word = m_Words.Next();
        auto const * const name = std::find_if(k_ChannelNames.begin(), k_ChannelNames.end(),
                                               [word](std::string_view known) { return EqualWords(known, word); });
        if (name == k_ChannelNames.end())
        {
            m_Words.Fail("expected a channel such as \"Xrotation\", found " + Quoted(word));
        }
        auto const channel = static_cast<Channel>(name - k_ChannelNames.begin());
        std::vector<Channel> const & earlier = Current().channels;
        if (std::find(earlier.begin(), earlier.end(), channel) != earlier.end())
        {
            m_Words.Fail("the joint " + Quoted(Current().name) + " has the channel " + Quoted(word) + " twice");
        }
        return channel;
    }

    Words & m_Words;
    Skeleton m_Skeleton;
    std::vector<OpenJoint> m_Open;
};

std::size_t ReadFrameCount(Words & words)
{
    words.Expect("Frames:");
    std::string_view const word = words.Next();
    std::optional<unsigned long long> const count = ParseCount(word);
    if (!count || *count == 0)
    {
        words.Fail("expected a number of frames above 0, found " + Quoted(word));
    }
    return static_cast<std::size_t>(*count);
}

double ReadFrameTime(Words & words)
{
    words.Expect("Frame");
    words.Expect("Time:", " after \"Frame\"");
    std::string_view const word = words.Next();
    double const time = words.ToNumber(word);
    if (!(time > 0))
    {
        words.Fail("expected a frame time above 0, found " + Quoted(word));
    }
    return time;
}

/// One line of numbers, the first of which is the next word.
void ReadFrame(Words & words, Clip & clip, std::size_t frame)
{
    std::size_t const width = clip.skeleton.channelCount;
    std::string const which = "frame " + std::to_string(frame + 1);
    clip.values.push_back(words.ToNumber(words.Next()));
    for (std::size_t i = 1; i < width; ++i)
    {
        std::string_view const word = words.NextOfLine();
        if (word.empty())
        {
            words.Fail(which + " has " + std::to_string(i) + " of " + std::to_string(width) + " numbers");
        }
        clip.values.push_back(words.ToNumber(word));
    }
    if (std::string_view const word = words.NextOfLine(); !word.empty())
    {
        words.Fail(which + " has more than " + std::to_string(width) + " numbers: found " + Quoted(word));
    }
}

void ReadFrames(Words & words, Clip & clip)
{
    // A number takes two bytes or more with its blank: a count that claims more must not cost memory.
    std::size_t const mostNumbers = words.BytesLeft() / 2 + 1;
    if (clip.frameCount <= mostNumbers / clip.skeleton.channelCount)
    {
        clip.values.reserve(clip.frameCount * clip.skeleton.channelCount);
    }
    for (std::size_t frame = 0; frame < clip.frameCount; ++frame)
    {
        if (words.Peek().empty())
        {
            words.Next();
            words.Fail("the motion ends after " + std::to_string(frame) + " of " + std::to_string(clip.frameCount) +
                       " frames");
        }
        ReadFrame(words, clip, frame);
    }
    if (std::string_view const word = words.Next(); !word.empty())
    {
        words.Fail("expected the end of the file after " + std::to_string(clip.frameCount) + " frames, found " +
                   Quoted(word));
    }
}

} // namespace

FormatError::FormatError(std::string const & file, std::size_t line, std::string const & message)
    : InputError(file + ":" + std::to_string(line) + ": " + message), m_Line(line)
{
}

Clip ParseClip(std::string_view text, std::string const & name)
{
    Words words(text, name);
    Clip clip;
    clip.skeleton = HierarchyReader(words).Read();
    clip.frameCount = ReadFrameCount(words);
    clip.frameTime = ReadFrameTime(words);
    if (clip.skeleton.channelCount == 0)
    {
        words.Fail("no joint has a channel: there is nothing that moves");
    }
    ReadFrames(words, clip);
    return clip;
}

Clip ReadClip(std::istream & stream, std::string const & name)
{
    return ParseClip(ReadAll(stream, name), name);
}

Clip ReadClip(std::filesystem::path const & file)
{
    return ParseClip(ReadAll(file), file.string());
}

} // namespace clip
