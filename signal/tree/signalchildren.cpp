#include "signal/tree/signalchildren.h"

#include <string>
#include <vector>

namespace tesk {

namespace {

// The place for an element's name has always had 256 bytes.
constexpr std::size_t LongestElementName = 255;

struct SBounds {
    int left;
    int right;
};

// Walks the index tuples of an array, the last dimension fastest.
class CIndexWalk {
public:
    // @return false if the array has no dimensions, or one without bounds
    bool Begin(const Kestrin::KTypeInfo &array)
    {
        for (int dimension = 0; dimension < array.GetNbOfDimensions(); ++dimension) {
            SBounds bounds = {0, 0};
            int direction = 0;
            if (!array.GetArrayDimensionRanges(dimension, bounds.left, bounds.right, direction))
                return false;
            m_bounds.push_back(bounds);
            m_index.push_back(bounds.left);
        }
        return !m_bounds.empty();
    }

    // @return false behind the last tuple
    bool Next()
    {
        for (std::size_t dimension = m_bounds.size(); dimension-- > 0;) {
            const auto [left, right] = m_bounds[dimension];
            int &index = m_index[dimension];
            if (index != right) {
                index += left <= right ? 1 : -1;
                return true;
            }
            index = left;
        }
        return false;
    }

    // Such as "(3,2)".
    std::string Name() const
    {
        std::string name = "(";
        for (const int index : m_index)
            name.append(std::to_string(index)).push_back(',');
        name.back() = ')';
        return name;
    }

private:
    std::vector<SBounds> m_bounds;
    std::vector<int> m_index;
};

TReference<ISignalContainer> NewContainer()
{
    ISignalContainer *container = nullptr;
    CreateSignalContainer(&container, nullptr);
    return TReference<ISignalContainer>(container);
}

}  // namespace

bool CChildrenMaker::Add(ISignalContainer &children, const Kestrin::KTypeInfo &type, const char *name) const
{
    const TReference<ISignal> child = m_makeChild(type);
    if (child == nullptr)
        return false;
    child->SetName(name);
    return children.Add(child.get()) >= 0;
}

TReference<ISignalContainer> CChildrenMaker::OfArray(const Kestrin::KTypeInfo &type) const
{
    TReference<ISignalContainer> children = NewContainer();
    const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo();
    CIndexWalk indices;
    if (children == nullptr || element == nullptr || !indices.Begin(type))
        return nullptr;
    do {
        const std::string name = indices.Name();
        if (name.size() > LongestElementName || !Add(*children, *element, name.c_str()))
            return nullptr;
    } while (indices.Next());
    return children;
}

TReference<ISignalContainer> CChildrenMaker::OfRecord(const Kestrin::KTypeInfo &type) const
{
    TReference<ISignalContainer> children = NewContainer();
    if (children == nullptr)
        return nullptr;
    for (int field = 0; field < type.GetNbOfFields(); ++field) {
        const Kestrin::KTypeInfo *fieldType = type.GetFieldKTypeInfo(field);
        const std::string name = std::string(".") + type.GetFieldName(field);
        if (fieldType == nullptr || !Add(*children, *fieldType, name.c_str()))
            return nullptr;
    }
    return children;
}

}  // namespace tesk
