#pragma once

/// \file
/// A contact record filled with markers, to tell which of its fields a query writes.

#include "math/contact_record.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace test_support
{

/// The fields of a contact record, to be combined with `|`.
enum RecordField : unsigned
{
    k_NoField = 0,
    k_PositionX = 1U << 0U,
    k_PositionY = 1U << 1U,
    k_PositionZ = 1U << 2U,
    k_NormalX = 1U << 3U,
    k_NormalY = 1U << 4U,
    k_NormalZ = 1U << 5U,
    k_U = 1U << 6U,
    k_V = 1U << 7U,
    k_Distance = 1U << 8U,
    k_Position = k_PositionX | k_PositionY | k_PositionZ,
    k_Normal = k_NormalX | k_NormalY | k_NormalZ,
    k_AllFields = k_Position | k_Normal | k_U | k_V | k_Distance
};

/// What flags and counts hold before a query: no query stores it.
inline constexpr unsigned long k_MarkedFlags = 0xBADU;
inline constexpr unsigned int k_MarkedCount = 0xBADU;

/// A record with a number of its own in each field, which no query is likely to compute.
inline tagS3DGEOMINFO MakeMarkedRecord()
{
    tagS3DGEOMINFO record;
    record.position = C3DVector3Tpl<double>(-7001.125, -7002.125, -7003.125);
    record.normal = C3DVector3Tpl<double>(-7004.125, -7005.125, -7006.125);
    record.u = -7007.125;
    record.v = -7008.125;
    record.distance = -7009.125;
    return record;
}

/// Whether a record that was marked differs from its markers in the named fields and in no others.
inline testing::AssertionResult HasOnly(unsigned fields, tagS3DGEOMINFO const & record)
{
    static constexpr char const * names[] = {"position.X", "position.Y", "position.Z", "normal.X", "normal.Y",
                                             "normal.Z",   "u",          "v",          "distance"};
    auto const listFields = [](tagS3DGEOMINFO const & r, double(&list)[9])
    {
        double const values[9] = {r.position.X, r.position.Y, r.position.Z, r.normal.X, r.normal.Y,
                                  r.normal.Z,   r.u,          r.v,          r.distance};
        std::copy_n(values, 9, list);
    };
    double found[9];
    double marks[9];
    listFields(record, found);
    listFields(MakeMarkedRecord(), marks);
    testing::AssertionResult result = testing::AssertionSuccess();
    for (unsigned i = 0; i < 9; ++i)
    {
        bool const isExpected = (fields >> i & 1U) != 0;
        if (isExpected == SameBits(found[i], marks[i]))
        {
            result = (result ? testing::AssertionFailure() : result)
                     << names[i] << (isExpected ? " was not written; " : " was written; ");
        }
    }
    return result;
}

} // namespace test_support
