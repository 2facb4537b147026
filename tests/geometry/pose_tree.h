#pragma once

/// \file
/// The poses of an application: a tree of transformations, whose nodes note the calls made to them and fail on order.

#include "math/platform/pose.h"
#include "math/platform/result.h"
#include "math/transformation.h"
#include "support/random.h"

#include <array>
#include <ostream>
#include <vector>

namespace geometry_test
{

enum class PoseOperation : unsigned
{
    GlobalTransfo,
    GlobalMatrix,
    RelativeTransfo,
    GlobalPosition,
    GlobalScaling
};

/// A call of a pose, with its operands where it has some.
struct PoseCall
{
    I3DPose_QN const * pose = nullptr;
    PoseOperation operation = PoseOperation::GlobalTransfo;
    I3DPose_QN const * other = nullptr;
    unsigned components = 0;

    bool operator==(PoseCall const &) const = default;
};

inline void PrintTo(PoseCall const & call, std::ostream * stream)
{
    static constexpr std::array<char const *, 5> names{"GetGlobalTransfo", "GetGlobalMatrix", "GetRelativeTransfo",
                                                       "GetGlobalPosition", "GetGlobalScaling"};
    *stream << call.pose << "->" << names[static_cast<unsigned>(call.operation)];
    if (call.operation == PoseOperation::RelativeTransfo)
    {
        *stream << "(" << call.other << ", " << call.components << ")";
    }
}

using PoseCalls = std::vector<PoseCall>;

/// A node of a tree of poses. It stands in the space of its parent; how the two compose, by component or by matrix, is
/// told by the QN scaling flag of its own transformation.
class PoseNode final : public I3DPose_QN
{
public:
    /// Whether an operation that fails has written its output before.
    enum class OnFailure : unsigned
    {
        LeaveOutput,
        WriteOutput
    };

    explicit PoseNode(PoseNode * parent = nullptr) : m_Parent(parent) {}
    PoseNode(PoseNode const &) = delete;
    PoseNode & operator=(PoseNode const &) = delete;
    ~PoseNode() = default;

    /// \name The application's side
    ///@{

    /// Where the node stands in the space of its parent.
    C3DTransfo & Local() { return m_Local; }

    void PlaceGlobal(C3DTransfo & out)
    {
        out.Set(m_Local);
        for (PoseNode * parent = m_Parent; parent != nullptr; parent = parent->m_Parent)
        {
            out.Mul(parent->m_Local, 63);
        }
    }

    C3DXfoMatTpl<double> GlobalMatrix()
    {
        C3DTransfo global;
        PlaceGlobal(global);
        C3DXfoMatTpl<double> matrix;
        global.GetMatrix(matrix);
        return matrix;
    }

    /// Takes the second axis away, so that the matrix is singular.
    void Flatten()
    {
        C3DXfoMatTpl<double> matrix;
        m_Local.GetMatrix(matrix);
        matrix.SetRow(1, 0, 0, 0, 0);
        m_Local.Set(matrix);
    }

    /// Notes the calls from now on.
    void NoteIn(PoseCalls & calls) { m_Calls = &calls; }

    /// The call of this number, counted from 0, returns the code.
    void Fail(PoseOperation operation, int number, long code, OnFailure onFailure = OnFailure::LeaveOutput)
    {
        m_Failure = {operation, number, code, onFailure};
    }
    ///@}

    /// \name The library's side
    ///@{
    long GetGlobalTransfo(C3DTransfo & out) override
    {
        return Answer({this, PoseOperation::GlobalTransfo}, [&] { PlaceGlobal(out); });
    }

    long GetGlobalMatrix(C3DXfoMatTpl<double> const ** out) override
    {
        return Answer({this, PoseOperation::GlobalMatrix},
                      [&]
                      {
                          m_Matrix = GlobalMatrix();
                          *out = &m_Matrix;
                      });
    }

    long GetRelativeTransfo(C3DTransfo & out, I3DPose_QN * other, unsigned char components) override
    {
        return Answer({this, PoseOperation::RelativeTransfo, other, components},
                      [&]
                      {
                          C3DTransfo otherGlobal;
                          static_cast<PoseNode *>(other)->PlaceGlobal(otherGlobal);
                          C3DTransfo own;
                          PlaceGlobal(own);
                          out.SetQNScalingFlag(own.GetQNScalingFlag());
                          out.Dif(own, otherGlobal, components, nullptr);
                      });
    }

    long GetGlobalPosition(C3DVector3Tpl<double> & out) override
    {
        return Answer({this, PoseOperation::GlobalPosition},
                      [&]
                      {
                          C3DTransfo global;
                          PlaceGlobal(global);
                          global.GetTranslation(out);
                      });
    }

    long GetGlobalScaling(C3DVector3Tpl<double> & out) override
    {
        return Answer({this, PoseOperation::GlobalScaling},
                      [&]
                      {
                          C3DTransfo global;
                          PlaceGlobal(global);
                          global.GetScaling(out);
                      });
    }
    ///@}

private:
    struct Failure
    {
        PoseOperation operation = PoseOperation::GlobalTransfo;
        int callsBefore = -1;
        long code = S_OK;
        OnFailure onFailure = OnFailure::LeaveOutput;
    };

    template <typename Write>
    long Answer(PoseCall const & call, Write write)
    {
        if (m_Calls != nullptr)
        {
            m_Calls->push_back(call);
        }
        bool const fails = call.operation == m_Failure.operation && m_Failure.callsBefore-- == 0;
        if (!fails || m_Failure.onFailure == OnFailure::WriteOutput)
        {
            write();
        }
        return fails ? m_Failure.code : S_OK;
    }

    PoseNode * m_Parent;
    C3DTransfo m_Local;
    C3DXfoMatTpl<double> m_Matrix;
    PoseCalls * m_Calls = nullptr;
    Failure m_Failure;
};

/// Two poses whose calls are noted, in one list.
struct TwoPoses
{
    TwoPoses()
    {
        own.NoteIn(calls);
        other.NoteIn(calls);
    }

    PoseCalls calls;
    PoseNode own;
    PoseNode other;
};

/// A place to stand: anywhere within ten units, turned anyhow.
inline void PlaceAnywhere(test_support::Random & random, C3DTransfo & transfo)
{
    transfo.SetTranslation(random.Uniform(-10.0, 10.0), random.Uniform(-10.0, 10.0), random.Uniform(-10.0, 10.0));
    transfo.SetRotation(random.Uniform(-3.0, 3.0), random.Uniform(-1.5, 1.5), random.Uniform(-3.0, 3.0));
}

/// A node below two others, that scales and mirrors and composes by component or by matrix, where shear arises.
struct PoseBranch
{
    PoseBranch(test_support::Random & random, bool byComponent) : trunk(&root), leaf(&trunk)
    {
        for (PoseNode * node : {&root, &trunk, &leaf})
        {
            node->Local().SetQNScalingFlag(byComponent ? 1 : 0);
            PlaceAnywhere(random, node->Local());
            node->Local().SetScaling(random.OverDecades(-0.3, 0.3), random.OverDecades(-0.3, 0.3),
                                     random.OverDecades(-0.3, 0.3));
        }
    }

    PoseNode root;
    PoseNode trunk;
    PoseNode leaf;
};

} // namespace geometry_test
