#pragma once

#include "clip/clip.h"
#include "math/vector3.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// A clip put together joint by joint. The roots alone have channels, for their position, unless it says otherwise.
class MadeClip
{
public:
    static constexpr int k_Root = -1;

    int Add(std::string name, int parent, C3DVector3Tpl<double> const & offset,
            std::vector<clip::Channel> channels = {})
    {
        clip::Joint joint;
        joint.name = std::move(name);
        joint.parent = parent;
        joint.offset = offset;
        joint.channels = std::move(channels);
        if (parent == k_Root)
        {
            joint.channels = {clip::Channel::XPosition, clip::Channel::YPosition, clip::Channel::ZPosition};
        }
        return clip::AddJoint(m_Clip.skeleton, std::move(joint));
    }

    int AddEndSite(int parent, C3DVector3Tpl<double> const & offset)
    {
        clip::Joint site;
        site.name = m_Clip.skeleton.joints[static_cast<std::size_t>(parent)].name + "_end";
        site.parent = parent;
        site.offset = offset;
        site.isEndSite = true;
        return clip::AddJoint(m_Clip.skeleton, std::move(site));
    }

    /// Numbers for the channels of all joints.
    void AddFrame(std::vector<double> const & values)
    {
        m_Clip.values.insert(m_Clip.values.end(), values.begin(), values.end());
        ++m_Clip.frameCount;
    }

    clip::Clip & Get()
    {
        m_Clip.frameTime = 0.5;
        return m_Clip;
    }

private:
    clip::Clip m_Clip;
};
