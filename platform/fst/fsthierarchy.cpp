#include "platform/fst/fsthierarchy.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "platform/fst/fstunpack.h"
#include "platform/names/signalname.h"

namespace NTARN {
namespace {

// What an entry begins with: the type of a variable, or one of these.
constexpr std::uint8_t AttributeBegin = 252;
constexpr std::uint8_t AttributeEnd = 253;
constexpr std::uint8_t ScopeBegin = 254;
constexpr std::uint8_t ScopeEnd = 255;

constexpr std::uint8_t PortType = 18;
constexpr std::uint8_t TextType = 21;
constexpr std::uint8_t LastType = 29;
constexpr std::array<std::uint8_t, 4> RealTypes = {3, 4, 20, 29};

constexpr std::uint32_t RealSize = 8;
constexpr std::uint64_t GeometryText = 0xFFFFFFFF;
constexpr std::uint64_t GeometryReal = 0;
constexpr std::uint64_t MostVarint = 10;

// Longer paths are no names any more; together they could fill the memory.
constexpr std::size_t MostPathSize = 1 << 16;

// A port has three letters a bit, and two blanks that divide them. Writers that know nothing of that give it as many
// letters as it has bits.
bool IsPortSize(std::uint32_t size)
{
    return size >= 5 && (size - 2) % 3 == 0;
}

SFstStore::EKind KindOf(std::uint8_t type, std::uint32_t length)
{
    if (std::ranges::find(RealTypes, type) != RealTypes.end())
        return SFstStore::EKind::Real;
    if (type == TextType || length == 0)
        return SFstStore::EKind::Text;
    return type == PortType && IsPortSize(length) ? SFstStore::EKind::Port : SFstStore::EKind::Bits;
}

std::uint64_t GeometrySize(const SFstStore &store)
{
    switch (store.kind) {
    case SFstStore::EKind::Real: return GeometryReal;
    case SFstStore::EKind::Text: return GeometryText;
    default: return store.size;
    }
}

std::uint32_t Length(CFstBytes &bytes)
{
    const std::uint64_t length = bytes.Varint();
    if (length > std::numeric_limits<std::uint32_t>::max())
        throw XFstDamage();
    return static_cast<std::uint32_t>(length);
}

// Unpacked once, it is a packed hierarchy still; its length stands in front.
CFstBuffer UnpackTwice(SFstSpan packed, std::uint64_t size, const SFstLimits &limits)
{
    CFstBytes bytes(packed);
    const std::uint64_t onceSize = bytes.Varint();
    if (onceSize > limits.Unpacked())
        throw XFstTooMuch{{}, "bytes of names"};
    const CFstBuffer once = FstUnpack(EFstPacker::Lz4, bytes.Rest(), onceSize);
    return FstUnpack(EFstPacker::Lz4, once, size);
}

}  // namespace

std::uint32_t SFstStore::Width() const
{
    switch (kind) {
    case EKind::Bits: return size;
    case EKind::Port: return (size - 2) / 3;
    case EKind::Real: return 1;
    default: return 0;
    }
}

CFstHierarchy::CFstHierarchy(CFstBuffer bytes, bool mayEndEarly, const SFstLimits &limits)
    : m_limits(limits), m_bytes(std::move(bytes))
{
    if (m_bytes.size() > limits.Unpacked())
        throw XFstTooMuch{{}, "bytes of names"};
    CFstBytes rest(m_bytes);
    try {
        while (!rest.AtEnd())
            ReadEntry(rest);
    } catch (const XFstTooMuch &) {
        throw;
    } catch (const XFstDamage &) {
        if (!mayEndEarly)
            throw;
    }
}

SFstName CFstHierarchy::Name(const SFstVariable &variable) const
{
    const char *const text = reinterpret_cast<const char *>(m_bytes.data()) + variable.name;
    return SplitFstName(text, m_stores[variable.store].Width());
}

std::string CFstHierarchy::Path(const SFstVariable &variable, char separator) const
{
    const std::size_t scopesSize = variable.scope < 0 ? 0 : m_scopes[static_cast<std::size_t>(variable.scope)].pathSize;
    std::string path(scopesSize, separator);
    std::size_t end = scopesSize;
    for (int i = variable.scope; i >= 0; i = m_scopes[static_cast<std::size_t>(i)].parent) {
        const SScope &scope = m_scopes[static_cast<std::size_t>(i)];
        end -= scope.name.size() + 1;
        std::ranges::copy(scope.name, path.begin() + static_cast<std::ptrdiff_t>(end));
    }
    const SFstName name = Name(variable);
    path += SpellSignalName(name.base);
    path += name.index;
    return path;
}

void CFstHierarchy::ReadEntry(CFstBytes &bytes)
{
    const std::uint8_t type = bytes.Byte();
    switch (type) {
    case ScopeBegin: return OpenScope(bytes);
    case ScopeEnd: return CloseScope();
    case AttributeEnd: return;
    case AttributeBegin:
        bytes.Take(2);
        bytes.Text();
        bytes.Varint();
        return;
    default: return AddVariable(type, bytes);
    }
}

void CFstHierarchy::OpenScope(CFstBytes &bytes)
{
    bytes.Byte();
    const std::string_view name = bytes.Text();
    bytes.Text();  // the scope's component
    const int outside = m_open.empty() ? -1 : m_open.back();
    m_open.push_back(name.empty() ? outside : AddScope(name));
}

// A scope without a name is no level of the path.
int CFstHierarchy::AddScope(std::string_view name)
{
    CountEntry();
    const int outside = m_open.empty() ? -1 : m_open.back();
    const std::string_view spelled = Spelled(name);
    const std::size_t pathSize =
        (outside < 0 ? 0 : m_scopes[static_cast<std::size_t>(outside)].pathSize) + spelled.size() + 1;
    if (pathSize > MostPathSize || m_scopes.size() >= std::numeric_limits<int>::max())
        throw XFstDamage();
    m_scopes.push_back({spelled, outside, static_cast<std::uint32_t>(pathSize)});
    return static_cast<int>(m_scopes.size()) - 1;
}

std::string_view CFstHierarchy::Spelled(std::string_view scope)
{
    if (scope.front() != '\\' && scope.find_first_of("()") == std::string_view::npos)
        return scope;
    return m_spelled.emplace_back(SpellSignalName(scope));
}

void CFstHierarchy::CountEntry()
{
    if (++m_entries > m_limits.Entries())
        throw XFstTooMuch{{}, "scopes and signals"};
}

// More ends than beginnings do no harm: some dumps have them.
void CFstHierarchy::CloseScope()
{
    if (!m_open.empty())
        m_open.pop_back();
}

void CFstHierarchy::AddVariable(std::uint8_t type, CFstBytes &bytes)
{
    if (type > LastType)
        throw XFstDamage();
    const std::uint8_t direction = bytes.Byte();
    const std::string_view name = bytes.Text();
    const std::uint32_t length = Length(bytes);
    const std::uint32_t alias = Length(bytes);  // counted from 1; 0 if it is none
    if (alias > m_stores.size() || name.size() > MostPathSize)
        throw XFstDamage();
    const std::uint32_t store = alias != 0 ? alias - 1 : AddStore(type, length);
    CountEntry();
    const std::uint32_t width = m_stores[store].Width();
    if (width == 0 || width > MostWidth) {
        ++(width == 0 ? m_textCount : m_wideCount);
        return;
    }
    m_elements += width;
    if (m_elements > m_limits.Elements())
        throw XFstTooMuch{{}, "bits"};
    const int scope = m_open.empty() ? -1 : m_open.back();
    CountPath(name.size(), scope);
    const char *const begin = reinterpret_cast<const char *>(m_bytes.data());
    m_variables.push_back({static_cast<std::uint32_t>(name.data() - begin), scope, store, direction});
}

void CFstHierarchy::CountPath(std::size_t nameSize, int scope)
{
    m_nameBytes += nameSize + (scope < 0 ? 0 : m_scopes[static_cast<std::size_t>(scope)].pathSize);
    if (m_nameBytes > m_limits.NameBytes())
        throw XFstTooMuch{{}, "bytes of names"};
}

std::uint32_t CFstHierarchy::AddStore(std::uint8_t type, std::uint32_t length)
{
    const SFstStore::EKind kind = KindOf(type, length);
    if (m_stores.size() >= std::numeric_limits<std::uint32_t>::max())
        throw XFstDamage();
    const std::uint64_t position = m_stores.empty() ? 0 : m_stores.back().position + m_stores.back().size;
    const std::uint32_t size = kind == SFstStore::EKind::Real ? RealSize : kind == SFstStore::EKind::Text ? 0 : length;
    m_stores.push_back({kind, size, position});
    return static_cast<std::uint32_t>(m_stores.size() - 1);
}

CFstBuffer ReadFstHierarchy(CFstFile &file, const SFstBlock &block, const SFstLimits &limits)
{
    const CFstBuffer contents = file.Read(block.position, block.size);
    CFstBytes bytes(contents);
    const std::uint64_t size = bytes.Big<std::uint64_t>();
    if (size > limits.Unpacked())
        throw XFstTooMuch{{}, "bytes of names"};
    switch (block.kind) {
    case EFstBlock::HierarchyLz4: return FstUnpack(EFstPacker::Lz4, bytes.Rest(), size);
    case EFstBlock::HierarchyLz4Twice: return UnpackTwice(bytes.Rest(), size, limits);
    default: return FstUnpack(EFstPacker::Gzip, bytes.Rest(), size);
    }
}

void CheckFstGeometry(CFstFile &file, const SFstBlock &block, const std::vector<SFstStore> &stores)
{
    const CFstBuffer contents = file.Read(block.position, block.size);
    CFstBytes head(contents);
    const std::uint64_t size = head.Big<std::uint64_t>();
    if (head.Big<std::uint64_t>() != stores.size() || size / MostVarint > stores.size())
        throw XFstDamage();
    const CFstBuffer sizes = FstInflateIfPacked(head.Rest(), size);
    CFstBytes bytes(sizes);
    for (const SFstStore &store : stores) {
        if (bytes.Varint() != GeometrySize(store))
            throw XFstDamage();
    }
}

}  // namespace NTARN
