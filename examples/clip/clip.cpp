#include "clip/clip.h"

#include <algorithm>
#include <utility>

namespace clip
{

int AddJoint(Skeleton & skeleton, Joint joint)
{
    joint.firstChannel = skeleton.channelCount;
    skeleton.channelCount += joint.channels.size();
    skeleton.joints.push_back(std::move(joint));
    return static_cast<int>(skeleton.joints.size()) - 1;
}

std::size_t CountJoints(Skeleton const & skeleton)
{
    return static_cast<std::size_t>(std::count_if(skeleton.joints.begin(), skeleton.joints.end(),
                                                  [](Joint const & joint) { return !joint.isEndSite; }));
}

std::vector<int> FindEnds(Skeleton const & skeleton)
{
    std::vector<bool> hasChild(skeleton.joints.size(), false);
    for (Joint const & joint : skeleton.joints)
    {
        if (joint.parent != k_NoParent)
        {
            hasChild[static_cast<std::size_t>(joint.parent)] = true;
        }
    }
    std::vector<int> ends;
    for (std::size_t i = 0; i < hasChild.size(); ++i)
    {
        if (!hasChild[i])
        {
            ends.push_back(static_cast<int>(i));
        }
    }
    return ends;
}

} // namespace clip
