#pragma once

#include "support/streams.h"

namespace describe_test
{

/// A stream on memory on which one transfer fails, that of a number counted from 0, without moving a byte; those after
/// it succeed. It tells a record that goes on after a failure from one that gives up.
class StreamFailingOnce final : public math::detail::CountedStream
{
public:
    explicit StreamFailingOnce(int number, std::span<unsigned char const> bytes = {})
        : m_Memory(test_support::MakeMemoryStream(bytes)), m_Remaining(number)
    {
    }

    long Read(void * target, unsigned long count, unsigned long * done) override
    {
        return m_Remaining-- == 0 ? E_FAIL : m_Memory->Read(target, count, done);
    }

    long Write(void const * source, unsigned long count, unsigned long * done) override
    {
        return m_Remaining-- == 0 ? E_FAIL : m_Memory->Write(source, count, done);
    }

    long Seek(long long distance, unsigned long origin, unsigned long long * position) override
    {
        return m_Memory->Seek(distance, origin, position);
    }

    test_support::Bytes GetBytes() const { return test_support::GetBytes(*m_Memory); }

private:
    test_support::StreamPointer<CMemoryStream> m_Memory;
    int m_Remaining;
};

inline test_support::StreamPointer<StreamFailingOnce> MakeStreamFailingOnce(int number,
                                                                            std::span<unsigned char const> bytes = {})
{
    return test_support::StreamPointer<StreamFailingOnce>(new StreamFailingOnce(number, bytes));
}

} // namespace describe_test
