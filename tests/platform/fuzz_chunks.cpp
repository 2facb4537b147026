/// \file
/// Reads chunks from hostile bytes, and checks every step against a model that works on the bytes alone.
///
/// An input is the number of steps, the steps (one byte each: the operation in the low four bits, its argument in the
/// high four), and the content of the stream.

#include "math/platform/stream_helper.h"
#include "support/streams.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size);

namespace
{

using Content = std::span<std::uint8_t const>;

void Require(bool holds, char const * what)
{
    if (!holds)
    {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

std::uint64_t GetNumber(Content bytes)
{
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        number |= std::uint64_t{bytes[i]} << (8 * i);
    }
    return number;
}

/// What a reader of these bytes may do: where it stands, and which chunks it is in.
class Model
{
public:
    explicit Model(Content content) : m_content(content) {}

    /// The bytes that a read gives, or nothing where it must fail.
    std::optional<Content> Read(std::uint64_t count)
    {
        if (count == 0)
        {
            return Content();
        }
        std::uint64_t const end = m_chunks.empty() ? m_content.size() : m_chunks.back().end;
        if ((!m_chunks.empty() && position < m_chunks.back().begin) || position > end || count > end - position)
        {
            return std::nullopt;
        }
        Content const bytes = m_content.subspan(position, count);
        position += count;
        return bytes;
    }

    bool Move(bool back, std::uint64_t distance)
    {
        if (back && distance > position)
        {
            return false;
        }
        std::uint64_t const target = back ? position - distance : position + distance;
        if (!m_chunks.empty() && (target < m_chunks.back().begin || target > m_chunks.back().end))
        {
            return false;
        }
        position = target;
        return true;
    }

    /// The version of the chunk entered, or nothing where it must be refused.
    std::optional<std::uint64_t> Open(std::uint64_t tag)
    {
        std::uint64_t const start = position;
        std::uint64_t const end = m_chunks.empty() ? m_content.size() : m_chunks.back().end;
        std::optional<Content> const header = Read(12);
        if (!header)
        {
            return std::nullopt;
        }
        std::uint64_t const length = GetNumber(header->subspan(8, 4));
        if (GetNumber(header->first(4)) != tag || length == 0xFFFFFFFF || length > end - position)
        {
            position = start;
            return std::nullopt;
        }
        m_chunks.push_back({position, position + length});
        return GetNumber(header->subspan(4, 4));
    }

    bool Close()
    {
        if (m_chunks.empty())
        {
            return false;
        }
        Chunk const chunk = m_chunks.back();
        m_chunks.pop_back();
        bool const within = position >= chunk.begin && position <= chunk.end;
        position = chunk.end;
        return within;
    }

    /// The tag at the position, so that chunks are entered at all.
    std::uint64_t PeekTag() const
    {
        bool const holds = position <= m_content.size() && m_content.size() - position >= 4;
        return holds ? GetNumber(m_content.subspan(position, 4)) : 0;
    }

    std::uint64_t GetSize() const { return m_content.size(); }

    std::uint64_t position{0};

private:
    struct Chunk
    {
        std::uint64_t begin;
        std::uint64_t end;
    };

    Content m_content;
    std::vector<Chunk> m_chunks;
};

void Compare(long result, bool expected, char const * operation)
{
    Require((result >= 0) == expected, operation);
    Require(expected ? result == S_OK : result == E_FAIL || result == E_INVALIDARG, "a known code");
}

template <typename Value>
void ReadScalar(CKVStreamHelper & helper, Model & model, long (CKVStreamHelper::*get)(Value *))
{
    std::array<std::uint8_t, sizeof(Value)> found{};
    found.fill(0xA5);
    std::array<std::uint8_t, sizeof(Value)> const untouched = found;
    Value value{};
    std::memcpy(&value, found.data(), sizeof(value));
    std::optional<Content> const expected = model.Read(sizeof(Value));
    Compare((helper.*get)(&value), expected.has_value(), "scalar");
    std::memcpy(found.data(), &value, sizeof(value));
    Require(expected ? GetNumber(found) == GetNumber(*expected) : found == untouched, "scalar value");
}

void ReadTruthValue(CKVStreamHelper & helper, Model & model)
{
    int value = 42;
    std::optional<Content> const expected = model.Read(1);
    Compare(helper.GetBool(&value), expected.has_value(), "truth value");
    int const truth = expected && (*expected)[0] != 0 ? 1 : 0;
    Require(value == (expected ? truth : 42), "truth value");
}

void ReadArray(CKVStreamHelper & helper, Model & model, unsigned long count)
{
    std::vector<char> target(std::min(count, 1000UL) + 1, '\x5A');
    std::vector<char> const untouched = target;
    std::optional<Content> const expected = model.Read(count);
    Compare(helper.GetByteArray(target.data(), count), expected.has_value(), "array");
    Require(target.back() == '\x5A', "array end");
    auto const same = [](std::uint8_t byte, char found) { return byte == static_cast<std::uint8_t>(found); };
    Require(expected ? std::equal(expected->begin(), expected->end(), target.begin(), same) : target == untouched,
            "array value");
}

void OpenChunk(CKVStreamHelper & helper, Model & model, std::uint64_t tag)
{
    unsigned long version = 0x5A5A5A5A;
    std::optional<std::uint64_t> const expected = model.Open(tag);
    Compare(helper.ChunkReadOpen(static_cast<unsigned long>(tag), &version), expected.has_value(), "open");
    Require(version == expected.value_or(0x5A5A5A5A), "version");
}

/// An object within the object reads through a helper of its own, which knows nothing of the chunks around it.
void ReadMember(IStream & stream, Content content, Model & model, unsigned long argument)
{
    CKVStreamHelper helper(&stream);
    Model member(content);
    member.position = model.position;
    OpenChunk(helper, member, member.PeekTag());
    ReadArray(helper, member, argument);
    if ((argument & 1U) != 0)
    {
        Compare(helper.ChunkReadClose(), member.Close(), "close of a member");
    }
    model.position = member.position;
}

void MovePosition(CKVStreamHelper & helper, Model & model, bool back, unsigned long distance)
{
    Compare(helper.MovePos(back ? STMHELPERDIR_BACK : STMHELPERDIR_FORWARD, distance), model.Move(back, distance),
            "move");
}

void Step(unsigned int operation, unsigned int argument, CMemoryStream & stream, CKVStreamHelper & helper,
          Model & model, Content content)
{
    constexpr std::uint64_t fixed_tag = 0x54455354;
    switch (operation)
    {
    case 0:
        return ReadScalar(helper, model, &CKVStreamHelper::GetUInt8);
    case 1:
        return ReadScalar(helper, model, &CKVStreamHelper::GetInt8);
    case 2:
        return ReadTruthValue(helper, model);
    case 3:
        return ReadScalar(helper, model, &CKVStreamHelper::GetFloat);
    case 4:
        return ReadScalar(helper, model, &CKVStreamHelper::GetDouble);
    case 5:
        return ReadArray(helper, model, argument * 3UL);
    case 6:
        return ReadArray(helper, model, 250UL + argument * 40UL);
    case 7:
        // Without a chunk this can pass the end, where nothing can be read.
        return MovePosition(helper, model, false, argument);
    case 8:
        return MovePosition(helper, model, true, argument * 2UL);
    case 9:
    case 10:
        return OpenChunk(helper, model, model.PeekTag());
    case 11:
        return OpenChunk(helper, model, fixed_tag ^ argument);
    case 12:
    case 13:
        return Compare(helper.ChunkReadClose(), model.Close(), "close");
    case 14:
        return ReadMember(stream, content, model, argument);
    default:
        // Someone else moves the stream, within it.
        model.position = model.GetSize() * argument / 15;
        Require(stream.Seek(static_cast<long long>(model.position), STREAM_SEEK_SET, nullptr) == S_OK, "seek");
        Compare(helper.ChunkWriteClose(), false, "no chunk is being written");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    if (size == 0)
    {
        return 0;
    }
    Content const input(data, size);
    std::size_t const steps = std::min<std::size_t>(input[0], size - 1);
    Content const program = input.subspan(1, steps);
    Content const content = input.subspan(1 + steps);

    auto const stream = test_support::MakeMemoryStream(content);
    {
        CKVStreamHelper helper(stream.get());
        Model model(content);
        for (std::uint8_t const step : program)
        {
            Step(step & 0xFU, step >> 4U, *stream, helper, model, content);
            unsigned long position = 0;
            Require(helper.GetPos(&position) == S_OK && position == model.position, "position");
        }
    }
    Require(test_support::CountReferences(*stream) == 1, "one reference left");
    Require(std::equal(content.begin(), content.end(), stream->GetBytes().begin(), stream->GetBytes().end()),
            "reading writes nothing");
    return 0;
}
