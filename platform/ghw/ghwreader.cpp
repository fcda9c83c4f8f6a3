#include "platform/ghw/ghwreader.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>
#include <vector>

#include "platform/felvarbase.h"
#include "platform/ghw/ghwtypetext.h"
#include "platform/log.h"
#include "platform/names/signalname.h"

namespace NTARN {
namespace {

using Kestrin::KTypeInfo;

constexpr std::string_view Magic = "GHDLwave\n";
constexpr std::uint8_t HeaderSize = 16;
constexpr std::uint8_t LatestVersion = 1;
constexpr std::uint8_t BigEndian = 2;
constexpr std::uint8_t WordSize = 4;

bool BeginsWithMagic(CGhwBytes &bytes)
{
    return std::ranges::all_of(Magic, [&](char c) { return bytes.Byte() == static_cast<std::uint8_t>(c); });
}

void ReadHeader(CGhwBytes &bytes)
{
    if (!BeginsWithMagic(bytes))
        throw XGhwDamage();
    const std::uint8_t size = bytes.Byte();
    const std::uint8_t majorVersion = bytes.Byte();
    const std::uint8_t version = bytes.Byte();
    const std::uint8_t order = bytes.Byte();
    const std::uint8_t wordSize = bytes.Byte();
    bytes.Byte();  // size of offsets in the directory
    bytes.Byte();
    if (size != HeaderSize || majorVersion != 0 || version > LatestVersion || order < 1 || order > BigEndian ||
        wordSize != WordSize)
        throw XGhwDamage();
    bytes.SetBigEndian(order == BigEndian);
}

// Which types the file knows by heart: its literals tell as much.
void PassKnownTypes(CGhwBytes &bytes)
{
    ExpectGhwZeros(bytes);
    while (bytes.Byte() != 0)
        bytes.Number();
}

// "[3]" or "[3][0]": the indices of an array's element, of which the last dimension's go fastest. A formula could not name
// "[3,0]": a comma ends its name.
std::string ElementName(const SGhwType &type, std::size_t part)
{
    std::string name;
    for (auto range = type.dimensions.rbegin(); range != type.dimensions.rend(); ++range) {
        const auto length = static_cast<std::size_t>(range->Length());
        const auto offset = static_cast<std::int64_t>(part % length);
        part /= length;
        name.insert(0, '[' + std::to_string(range->isDown ? range->left - offset : range->left + offset) + ']');
    }
    return name;
}

void Warn(const std::string &text)
{
    Q71log_PrintFormattedString(2, "KERNEL", "", text.c_str());
}

}  // namespace

bool IsGhwFile(const std::string &path)
try {
    CGhwBytes bytes(path);
    return BeginsWithMagic(bytes);
} catch (const tesk::XByteFault &) {
    throw;
} catch (const XFileUnreadable &) {
    throw;
} catch (const XGhwDamage &) {
    return false;
} catch (const XFileDoesNotExist &) {
    return false;
} catch (const XFileCorrupted &) {
    return false;
}

CGhwReader::SHead::SHead(CGhwBytes &bytes) : budget(bytes.Size())
{
    ReadHeader(bytes);
    ExpectGhwTag(bytes, GhwTag("STR"));
    strings = CGhwStrings(bytes, budget);
    ExpectGhwTag(bytes, GhwTag("TYP"));
    types = CGhwTypes(bytes, strings, budget);
    ExpectGhwTag(bytes, GhwTag("WKT"));
    PassKnownTypes(bytes);
    ExpectGhwTag(bytes, GhwTag("HIE"));
    hierarchy = CGhwHierarchy(bytes, types, budget);
    ExpectGhwTag(bytes, GhwTag("EOH"));
}

CGhwReader::CGhwReader(const std::string &path)
    : m_path(path), m_bytes(path), m_head(m_bytes), m_nodes(m_head.types, m_head.hierarchy, m_head.budget),
      m_changes(m_bytes, m_head.hierarchy.Values()), m_separator(GetVHDLHierarchySeparator()),
      m_roots(m_head.hierarchy.Signals().size())
{
    std::iota(m_roots.begin(), m_roots.end(), 1);
    WarnOfOpening();
}

HSignalRange CGhwReader::GetChildRange(int handle)
{
    const SGhwNode *node = m_nodes.Find(handle);
    return node != nullptr ? m_nodes.ChildrenOf(*node) : HSignalRange{};
}

std::string CGhwReader::GetName(int handle)
{
    const SGhwNode *node = m_nodes.Find(handle);
    if (node == nullptr)
        return {};
    if (node->parent == 0)
        return m_head.hierarchy.Path(m_head.hierarchy.Signals()[static_cast<std::size_t>(handle - 1)], m_separator);
    const SGhwType &type = m_head.types.At(m_nodes.Find(node->parent)->type);
    const std::size_t part = m_nodes.PartOf(handle);
    return type.kind == EGhwKind::Array ? ElementName(type, part)
                                        : SpellSignalName(m_head.strings.Text(type.fields[part].name));
}

// That of the whole.
tesk::ESignalDirection CGhwReader::GetDirection(int handle)
{
    const SGhwNode *node = m_nodes.Find(handle);
    for (; node != nullptr && node->parent != 0; node = m_nodes.Find(handle))
        handle = node->parent;
    return node != nullptr ? m_head.hierarchy.Signals()[static_cast<std::size_t>(handle - 1)].direction
                           : tesk::ESignalDirection::Unknown;
}

// The type of a part is told inside that of the whole.
const KTypeInfo &CGhwReader::GetType(int handle)
{
    static const KTypeInfo none("");
    const SGhwNode *node = m_nodes.Find(handle);
    if (node == nullptr)
        return none;
    if (node->parent == 0) {
        const auto known = m_types.find(node->type);
        if (known != m_types.end())
            return known->second;
        return m_types.emplace(node->type, KTypeInfo(GhwTypeText(m_head.types, node->type).c_str())).first->second;
    }
    const KTypeInfo &whole = GetType(node->parent);
    const KTypeInfo *element = whole.GetArrayElementKTypeInfo();
    const KTypeInfo *part =
        element != nullptr ? element : whole.GetFieldKTypeInfo(static_cast<int>(m_nodes.PartOf(handle)));
    return part != nullptr ? *part : none;
}

KEventIterator CGhwReader::EventsFrom(int handle, long long time)
{
    const std::vector<SFileEvent> *events = Events(handle);
    if (events == nullptr)
        return {nullptr, 0, 0};
    const auto event = std::ranges::lower_bound(*events, time, {}, &SFileEvent::time);
    return {events->data(), events->size(), static_cast<std::size_t>(event - events->begin())};
}

KEventIterator CGhwReader::EventsEnd(int handle)
{
    const std::vector<SFileEvent> *events = Events(handle);
    if (events == nullptr)
        return {nullptr, 0, 0};
    return {events->data(), events->size(), events->size()};
}

std::string CGhwReader::GetFullName(int handle, bool flag)
{
    const SGhwNode *node = m_nodes.Find(handle);
    if (node == nullptr || node->parent == 0)
        return GetName(handle);
    const bool isField = m_head.types.At(m_nodes.Find(node->parent)->type).kind == EGhwKind::Record;
    return GetFullName(node->parent, flag) + (isField ? "." : "") + GetName(handle);
}

// Null for what is no scalar.
const std::vector<SFileEvent> *CGhwReader::Events(int handle)
{
    const SGhwNode *node = m_nodes.Find(handle);
    if (node == nullptr || !m_head.types.At(node->type).IsScalar())
        return nullptr;
    const std::vector<SFileEvent> &events = m_changes.Events(m_head.hierarchy.ElementOf(node->element));
    WarnOfLoss();
    return &events;
}

void CGhwReader::WarnOfOpening() const
{
    const std::string upTo = "it is read up to time " + std::to_string(m_changes.End()) + ".";
    if (m_changes.State() == CGhwChanges::EState::Cut)
        Warn("Waveform file `" + m_path + "' is cut off: " + upTo);
    else if (m_changes.State() == CGhwChanges::EState::Damaged)
        Warn("Waveform file `" + m_path + "' is damaged: " + upTo);
    if (m_head.hierarchy.LeftOutCount() > 0)
        Warn("Waveform file `" + m_path + "': signals whose names or types are too long are left out (" +
             std::to_string(m_head.hierarchy.LeftOutCount()) + ").");
}

void CGhwReader::WarnOfLoss()
{
    if (m_hasWarned || !m_changes.HasLost())
        return;
    m_hasWarned = true;
    if (m_bytes.Error() != 0)
        return TellUnreadable(m_path, m_bytes.Error());
    Warn("Waveform file `" + m_path + "' has changed since it was opened: value changes are left out.");
}

}  // namespace NTARN
