#include "platform/ghw/ghwhierarchy.h"

#include <limits>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "platform/names/signalname.h"

namespace NTARN {
namespace {

// What an entry begins with.
enum class EGhwScope : std::uint8_t {
    End = 0,
    Block = 3,
    IfGenerate = 4,
    ForGenerate = 5,
    Instance = 6,
    Package = 7,
    Process = 13,
    ScopeEnd = 15,
    Signal = 16,
    PortIn = 17,
    PortOut = 18,
    PortInOut = 19,
    PortBuffer = 20,
    PortLinkage = 21
};

// Longer paths are no names any more; together they could fill the memory.
constexpr std::size_t MostPathSize = 1 << 12;
// And so could those of all that is named: as much for every file, and something for each byte.
constexpr std::uint64_t BasePaths = 32 << 20;
constexpr std::uint64_t PathsPerByte = 16;
// What the descriptions of all signals' types may cost together: as much for every file, and something for each byte.
constexpr std::uint64_t BaseTypeCost = 64 << 20;
constexpr std::uint64_t TypeCostPerByte = 16;

// Where a linkage leads nobody can tell.
tesk::ESignalDirection DirectionOf(EGhwScope kind)
{
    switch (kind) {
    case EGhwScope::PortIn: return tesk::ESignalDirection::In;
    case EGhwScope::PortOut:
    case EGhwScope::PortBuffer: return tesk::ESignalDirection::Out;
    case EGhwScope::PortInOut: return tesk::ESignalDirection::InOut;
    default: return tesk::ESignalDirection::Unknown;
    }
}

EGhwValue ValueOf(EGhwKind kind)
{
    switch (kind) {
    case EGhwKind::Enumeration: return EGhwValue::Byte;
    case EGhwKind::Integer: return EGhwValue::Integer;
    case EGhwKind::Real: return EGhwValue::Real;
    default: return EGhwValue::Long;
    }
}

}  // namespace

// Reads the section into the hierarchy.
class CGhwHierarchyReader {
public:
    CGhwHierarchyReader(CGhwHierarchy &hierarchy, CGhwBytes &bytes, const CGhwTypes &types, CGhwBudget &budget)
        : m_hierarchy(hierarchy), m_bytes(bytes), m_types(types), m_budget(budget),
          m_typeCostLeft(BaseTypeCost + TypeCostPerByte * bytes.Size()),
          m_pathsLeft(BasePaths + PathsPerByte * bytes.Size())
    {}

    void Run()
    {
        ExpectGhwZeros(m_bytes);
        m_bytes.Word();  // scopes
        m_bytes.Word();  // signals
        const std::uint32_t elementCount = m_bytes.Word();
        if (elementCount > m_bytes.Left())
            throw XGhwDamage();
        m_hierarchy.m_values.resize(elementCount);
        while (ReadEntry(static_cast<EGhwScope>(m_bytes.Byte())))
            ;
    }

private:
    bool ReadEntry(EGhwScope kind)
    {
        switch (kind) {
        case EGhwScope::End: return false;
        case EGhwScope::Block:
        case EGhwScope::IfGenerate:
        case EGhwScope::Instance:
        case EGhwScope::Package: OpenScope(Name()); return true;
        case EGhwScope::ForGenerate: OpenForGenerate(); return true;
        case EGhwScope::Process: Name(); return true;  // has nothing in it, and no end
        case EGhwScope::ScopeEnd: CloseScope(); return true;
        default: break;
        }
        if (kind < EGhwScope::Signal || kind > EGhwScope::PortLinkage)
            throw XGhwDamage();
        ReadSignal(DirectionOf(kind));
        return true;
    }

    std::string Name() { return SpellSignalName(m_types.Strings().Text(m_bytes.Number())); }

    void OpenForGenerate()
    {
        const std::string name = Name();
        const SGhwType &type = m_types.At(m_types.PlaceOf(m_bytes.Number()));
        OpenScope(name + '[' + Index(type) + ']');
    }

    // The value that a generate statement's parameter has in a scope.
    std::string Index(const SGhwType &type)
    {
        switch (type.kind) {
        case EGhwKind::Integer:
        case EGhwKind::LongInteger:
        case EGhwKind::Physical:
        case EGhwKind::LongPhysical: return std::to_string(m_bytes.Signed());
        case EGhwKind::Enumeration: break;
        default: throw XGhwDamage();
        }
        const std::uint8_t position = m_bytes.Byte();
        const std::vector<std::uint32_t> &literals = m_types.At(type.base).literals;
        if (position >= literals.size())
            throw XGhwDamage();
        return SpellSignalName(m_types.Strings().Text(literals[position]));
    }

    void OpenScope(std::string name)
    {
        m_budget.Charge(1 + name.size() / 16);
        const std::size_t size = PathSize() + (name.empty() ? 0 : name.size() + 1);
        m_hierarchy.m_scopes.push_back({std::move(name), m_scope, size});
        m_scope = static_cast<int>(m_hierarchy.m_scopes.size()) - 1;
    }

    void CloseScope()
    {
        if (m_scope < 0)
            throw XGhwDamage();
        m_scope = m_hierarchy.m_scopes[static_cast<std::size_t>(m_scope)].parent;
    }

    std::size_t PathSize() const
    {
        return m_scope < 0 ? 0 : m_hierarchy.m_scopes[static_cast<std::size_t>(m_scope)].pathSize;
    }

    void ReadSignal(tesk::ESignalDirection direction)
    {
        const std::uint32_t name = m_bytes.Number();
        const std::uint32_t type = m_types.PlaceOf(m_bytes.Number());
        const std::size_t first = m_hierarchy.m_elements.size();
        if (!m_types.At(type).isBounded || m_types.At(type).scalars > m_bytes.Left())
            throw XGhwDamage();
        ReadElements(m_types.At(type));
        if (IsNamed(name, m_types.At(type)) && IsTold(type)) {
            m_hierarchy.m_signals.push_back({name, m_scope, type, first, direction});
            return;
        }
        ++m_hierarchy.m_leftOutCount;
        m_hierarchy.m_elements.resize(first);
    }

    void ReadElements(const SGhwType &type)
    {
        if (type.scalars == 0)
            return;
        m_budget.Charge(1);
        if (type.IsScalar())
            return ReadElement(ValueOf(type.kind));
        const std::uint64_t count = type.PartCount();
        for (std::uint64_t i = 0; i < count; ++i)
            ReadElements(m_types.PartAt(type, static_cast<std::size_t>(i)));
    }

    void ReadElement(EGhwValue value)
    {
        const std::uint32_t number = m_bytes.Number();
        if (number == 0 || number > m_hierarchy.m_values.size())
            throw XGhwDamage();
        EGhwValue &known = m_hierarchy.m_values[number - 1];
        if (known != EGhwValue::None && known != value)
            throw XGhwDamage();
        known = value;
        m_hierarchy.m_elements.push_back(number - 1);
    }

    // Whether the paths of a signal and its parts are not too long.
    bool IsNamed(std::uint32_t name, const SGhwType &type)
    {
        const std::uint64_t size = PathSize() + m_types.Strings().Text(name).size();
        if (size > MostPathSize || type.vectors > m_pathsLeft || size * type.vectors > m_pathsLeft)
            return false;
        m_pathsLeft -= size * type.vectors;
        return true;
    }

    // Whether a type is told in a description that is not too large for its file.
    bool IsTold(std::uint32_t type)
    {
        if (m_told.contains(type))
            return true;
        const std::uint64_t cost = m_types.At(type).cost;
        if (cost > m_typeCostLeft)
            return false;
        m_typeCostLeft -= cost;
        m_told.insert(type);
        return true;
    }

    CGhwHierarchy &m_hierarchy;
    CGhwBytes &m_bytes;
    const CGhwTypes &m_types;
    CGhwBudget &m_budget;
    int m_scope = -1;  // the one that is open
    std::uint64_t m_typeCostLeft;
    std::uint64_t m_pathsLeft;
    std::unordered_set<std::uint32_t> m_told;
};

CGhwHierarchy::CGhwHierarchy(CGhwBytes &bytes, const CGhwTypes &types, CGhwBudget &budget) : m_types(&types)
{
    CGhwHierarchyReader(*this, bytes, types, budget).Run();
}

std::string CGhwHierarchy::Path(const SGhwSignal &signal, char separator) const
{
    const auto scopeAt = [this](int place) -> const SScope & { return m_scopes[static_cast<std::size_t>(place)]; };
    std::string path(signal.scope < 0 ? 0 : scopeAt(signal.scope).pathSize, separator);
    std::size_t end = path.size();
    for (int i = signal.scope; i >= 0; i = scopeAt(i).parent) {
        const std::string &name = scopeAt(i).name;
        if (name.empty())
            continue;
        end -= name.size() + 1;
        path.replace(end, name.size(), name);
    }
    return path + SpellSignalName(m_types->Strings().Text(signal.name));
}

}  // namespace NTARN
