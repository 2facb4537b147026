#include "geometry/intersect/contact_array.h"
#include "geometry/intersect/parameter_limits.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"

#include <cmath>

using namespace math::detail; // NOLINT(google-build-using-namespace): limits of parameters and kinds of contact
using Vector2 = C3DVector2Tpl<double>;

namespace
{

/// A fraction that is kept as its two terms until it is known to lie in 0 to 1.
/// \return whether it does, within the slack of an area; a numerator on the wrong side of 0 is then 0
bool LiesInUnitInterval(double & numerator, double denominator)
{
    if (denominator > 0)
    {
        if (!(numerator > -k_ParameterSlack && numerator < denominator + k_ParameterSlack))
        {
            return false;
        }
        numerator = numerator < 0 ? 0 : numerator;
        return true;
    }
    if (!(numerator < k_ParameterSlack && numerator > denominator - k_ParameterSlack))
    {
        return false;
    }
    numerator = numerator > 0 ? 0 : numerator;
    return true;
}

/// The walk along a polygon that looks for its crossings with a segment.
class PolygonWalk
{
public:
    PolygonWalk(unsigned long vertexCount, Vector2 const * vertices, int orientation, Vector2 const & a,
                Vector2 const & b, tagS3DGEOMINFO * records)
        : m_VertexCount(vertexCount), m_Vertices(vertices), m_Orientation(orientation), m_A(a), m_Records(records)
    {
        m_D.Sub(b, a);
    }

    /// \return 0, or `E_UNEXPECTED` where the polygon has a single vertex off the line
    long Run()
    {
        for (unsigned long i = 0; i < m_VertexCount; ++i)
        {
            Vector2 const & vertex = m_Vertices[i];
            Vector2 const edge = Vector2().Sub(m_Vertices[After(i, 1)], vertex);
            Vector2 const w = Vector2().Sub(vertex, m_A);
            double const denominator = edge.Y * m_D.X - m_D.Y * edge.X;
            double onEdge = w.X * m_D.Y - w.Y * m_D.X;
            double onSegment = w.X * edge.Y - w.Y * edge.X;
            if (std::abs(denominator) < k_ParameterSlack || !LiesInUnitInterval(onEdge, denominator) ||
                !LiesInUnitInterval(onSegment, denominator))
            {
                continue;
            }
            double const s = onEdge / denominator;
            double const t = onSegment / denominator;
            // At its first vertex the crossing belongs to the edge before.
            if (s < k_ParameterSlack || s >= k_JustAboveOne)
            {
                continue;
            }
            if (s < k_JustBelowOne)
            {
                AddRecord(PointAt(t), t);
            }
            else if (!PassVertex(i, edge, t))
            {
                return E_UNEXPECTED;
            }
        }
        return S_OK;
    }

    unsigned int Count() const { return m_Count; }

private:
    unsigned long After(unsigned long i, unsigned long steps) const { return (i + steps) % m_VertexCount; }

    Vector2 PointAt(double t) const { return Vector2().Mul(m_D, t).Add(m_A); }

    /// From a vertex to its projection on the line.
    Vector2 OffsetToLine(unsigned long i) const
    {
        Vector2 const w = Vector2().Sub(m_Vertices[i], m_A);
        Vector2 projection(w);
        projection.SetProjection(m_D);
        return projection.Sub(w);
    }

    void AddRecord(Vector2 const & position, double t)
    {
        if (m_Records != nullptr)
        {
            tagS3DGEOMINFO & record = m_Records[m_Count];
            record.position.Set(position.X, position.Y, 0);
            record.u = t;
            record.v = t;
        }
        ++m_Count;
    }

    /// The segment goes through the end of edge i: a crossing where the next vertex off the line lies on the other side
    /// of it than vertex i. The walk goes on from there.
    /// \return whether there is such a vertex
    bool PassVertex(unsigned long & i, Vector2 const & edge, double t)
    {
        constexpr double leastSquare = math::detail::k_StandardTolerance<double>;
        unsigned long j = After(i, 2);
        while (j != i && !(OffsetToLine(j).GetSquaredLength() >= leastSquare))
        {
            j = After(j, 1);
        }
        if (j == i)
        {
            return false;
        }
        if (!(Dot(OffsetToLine(j), OffsetToLine(i)) >= 0))
        {
            AddCrossing(i, j, edge, t);
        }
        i = j > i ? j - 1 : m_VertexCount - 1;
        return true;
    }

    /// Where vertices on the line were passed, the crossing is at the first or at the last of them, by the turn there.
    void AddCrossing(unsigned long i, unsigned long j, Vector2 const & edge, double t)
    {
        if (j != After(i, 2))
        {
            Vector2 const & next = m_Vertices[After(i, 1)];
            Vector2 const & last = m_Vertices[After(j, m_VertexCount - 1)];
            double const turn = (last.Y - next.Y) * edge.X - (last.X - next.X) * edge.Y;
            if (m_Orientation == (turn > 0 ? 1 : 0))
            {
                bool const isByX = std::abs(m_D.X) > k_ParameterSlack;
                AddRecord(last, isByX ? (last.X - m_A.X) / m_D.X : (last.Y - m_A.Y) / m_D.Y);
                return;
            }
        }
        AddRecord(PointAt(t), t);
    }

    unsigned long m_VertexCount;
    Vector2 const * m_Vertices;
    int m_Orientation;
    Vector2 m_A;
    Vector2 m_D;
    tagS3DGEOMINFO * m_Records;
    unsigned int m_Count = 0;
};

} // namespace

long F2DPolygonVs2DLineIntersection(unsigned long vertexCount, Vector2 const * vertices, int orientation,
                                    Vector2 const & a, Vector2 const & b, unsigned long & flags, unsigned int & count,
                                    tagS3DGEOMINFO ** infos)
{
    count = 0;
    tagS3DGEOMINFO * records = nullptr;
    if (infos != nullptr)
    {
        records = AllocateContacts(vertexCount);
        *infos = records;
        if (records == nullptr)
        {
            return E_OUTOFMEMORY;
        }
    }
    PolygonWalk walk(vertexCount, vertices, orientation, a, b, records);
    long const result = walk.Run();
    count = walk.Count();
    if (result == S_OK)
    {
        flags = count > 0 ? k_Intersecting : k_NoContact;
    }
    return result;
}
