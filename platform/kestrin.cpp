#include "platform/kestrin.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "base/saturate.h"
#include "platform/types/typereader.h"
#include "platform/types/typevalue.h"

namespace Kestrin {

namespace {

// The elements of a signal are mostly of one type and made one after the other: they share what was read for the first.
std::shared_ptr<const STypeDescription> ReadOrShare(const char *text)
{
    static thread_local std::weak_ptr<const STypeDescription> last;
    if (std::shared_ptr<const STypeDescription> same = last.lock();
        same != nullptr && text != nullptr && same->text == text)
        return same;
    std::shared_ptr<const STypeDescription> description = ReadTypeDescription(text);
    last = description;
    return description;
}

long long Length(const TTypeRange<int> &range)
{
    const long long span = range.downto ? static_cast<long long>(range.left) - range.right
                                        : static_cast<long long>(range.right) - range.left;
    return std::max(span + 1, 0LL);
}

bool BeginsWithSigned(const std::string &name)
{
    constexpr std::string_view Signed = "signed";
    return name.size() >= Signed.size() &&
           std::equal(Signed.begin(), Signed.end(), name.begin(),
                      [](char left, char right) { return left == std::tolower(static_cast<unsigned char>(right)); });
}

// Values are those of simple types. Objects are never unconstrained: the predefined vectors claim 2^31 elements.
bool HasValues(const KTypeInfo &type, const STypeDescription &description)
{
    return type.IsSimple() && (type.IsScalar() || description.dimensions.front().constrained);
}

// Bytes of a value of a simple type.
long long SimpleSize(const KTypeInfo &type)
{
    return tesk::MultiplySaturating(type.GetScalarSize_OldFormat(), type.GetNbOfElements());
}

}  // namespace

KTypeInfo::KTypeInfo(const char *text) : m_description(ReadOrShare(text)) {}

KTypeInfo::KTypeInfo(std::shared_ptr<const STypeDescription> description) : m_description(std::move(description)) {}

bool KTypeInfo::CheckTypeInfo(const char *text)
{
    return ReadOrShare(text)->kind != ETypeKind::Invalid;
}

int KTypeInfo::GetKind() const
{
    return static_cast<int>(m_description->kind);
}

bool KTypeInfo::IsScalar() const
{
    return Kestrin::IsScalar(*m_description);
}

bool KTypeInfo::IsSimple() const
{
    return IsScalar() || (GetNbOfDimensions() == 1 && m_description->element->IsScalar());
}

bool KTypeInfo::IsVerilog() const
{
    return m_description->isVerilog;
}

bool KTypeInfo::IsSigned() const
{
    if (m_description->kind == ETypeKind::Array && BeginsWithSigned(m_description->identifier))
        return true;
    return m_description->isVerilog ? m_description->isSignedVerilog : m_description->kind == ETypeKind::Integer;
}

const char *KTypeInfo::GetTypeInfoString() const
{
    return m_description->text.c_str();
}

const char *KTypeInfo::GetTypeIdentifier() const
{
    return m_description->identifier.c_str();
}

const KTypeInfo *KTypeInfo::GetArrayElementKTypeInfo() const
{
    return m_description->element ? &*m_description->element : nullptr;
}

const char *KTypeInfo::GetArrayElementTypeInfo() const
{
    return m_description->element ? m_description->element->GetTypeInfoString() : nullptr;
}

int KTypeInfo::GetNbOfDimensions() const
{
    return static_cast<int>(m_description->dimensions.size());
}

bool KTypeInfo::GetArrayDimensionRanges(int dimension, int &left, int &right, int &direction) const
{
    left = right = direction = 0;
    if (dimension < 0 || dimension >= GetNbOfDimensions())
        return false;
    const TTypeRange<int> &range = m_description->dimensions[static_cast<std::size_t>(dimension)];
    left = range.left;
    right = range.right;
    direction = range.downto ? 1 : 0;
    return true;
}

int KTypeInfo::GetNbOfFields() const
{
    return static_cast<int>(m_description->fields.size());
}

const char *KTypeInfo::GetFieldName(int index) const
{
    if (index < 0 || index >= GetNbOfFields())
        return nullptr;
    return m_description->fields[static_cast<std::size_t>(index)].name.c_str();
}

const char *KTypeInfo::GetFieldTypeInfo(int index) const
{
    const KTypeInfo *type = GetFieldKTypeInfo(index);
    return type != nullptr ? type->GetTypeInfoString() : nullptr;
}

const KTypeInfo *KTypeInfo::GetFieldKTypeInfo(int index) const
{
    if (index < 0 || index >= GetNbOfFields())
        return nullptr;
    return &m_description->fields[static_cast<std::size_t>(index)].type;
}

long long KTypeInfo::GetNbOfElements() const
{
    long long elements = m_description->kind == ETypeKind::Invalid ? 0 : 1;
    for (const TTypeRange<int> &range : m_description->dimensions)
        elements = tesk::MultiplySaturating(elements, Length(range));
    return elements;
}

unsigned KTypeInfo::GetScalarSize_OldFormat() const
{
    return ScalarSize(m_description->element ? *m_description->element->m_description : *m_description);
}

unsigned KTypeInfo::GetSimpleSize_OldFormat() const
{
    constexpr long long Largest = std::numeric_limits<unsigned>::max();
    return IsSimple() ? static_cast<unsigned>(std::min(SimpleSize(*this), Largest)) : 0;
}

std::string KTypeInfo::GetValueString_OldFormat(const void *value, int, int, int, bool) const
{
    if (value == nullptr || !HasValues(*this, *m_description))
        return {};
    const auto *bytes = static_cast<const unsigned char *>(value);
    if (IsScalar())
        return ScalarText(*m_description, bytes);
    return ArrayText(*m_description->element->m_description, bytes, static_cast<std::size_t>(GetNbOfElements()));
}

bool KTypeInfo::GetBytes_OldFormat(const char *text, void *buffer, unsigned size, int, int) const
{
    if (text == nullptr || buffer == nullptr || !HasValues(*this, *m_description) || SimpleSize(*this) > size)
        return false;
    std::string bytes;
    const bool isValue = IsScalar() ? ScalarBytes(*m_description, text, bytes)
                                    : ArrayBytes(*m_description->element->m_description,
                                                 static_cast<std::size_t>(GetNbOfElements()), text, bytes);
    if (isValue)
        std::memcpy(buffer, bytes.data(), bytes.size());
    return isValue;
}

}  // namespace Kestrin
