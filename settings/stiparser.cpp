#include "settings/stiparser.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "base/ascii.h"
#include "base/wrap.h"
#include "platform/crt.h"
#include "settings/text/fields.h"

namespace {

constexpr char Separator = ':';
constexpr char Quote = '"';

constexpr int DefaultStrength = 512;
constexpr const char *Override = "Override";

struct SStrength {
    const char *name;
    int value;
};

constexpr SStrength Strengths[] = {{"Default", DefaultStrength}, {Override, 1}, {"Deposit", 8}, {"Drive", 16}};

struct SDialog {
    const char *code;
    const char *name;
};

constexpr SDialog Dialogs[] = {{"VAL", "Value"},      {"FRM", "Formula"}, {"CLK", "Clock"}, {"KEY", "Hotkey"},
                               {"PRD", "Predefined"}, {"CST", "Custom"},  {"RND", "Random"}};

constexpr const char *StimTypes[] = {"FRM", "KEY"};  // by type number
constexpr int StimTypeCount = static_cast<int>(std::size(StimTypes));

// Whether `InitResources` has run. Until then the tables count as empty.
bool g_hasResources = false;

bool AreEqual(const char *left, const char *right)
{
    if (left == nullptr || right == nullptr)
        return left == right;
    return _stricmp(left, right) == 0;
}

const char *SkipSpace(const char *text)
{
    while (tesk::IsSpace(*text))
        ++text;
    return text;
}

const char *OrEmpty(const char *text)
{
    return text != nullptr ? text : "";
}

// The bytes of a field with its terminator.
std::size_t SizeOf(const char *field)
{
    return field != nullptr ? std::strlen(field) + 1 : 0;
}

// Null if memory runs out.
std::unique_ptr<char[]> CopyText(const char *text)
{
    const std::size_t size = SizeOf(text);
    std::unique_ptr<char[]> copy(new (std::nothrow) char[size]);
    if (copy)
        std::memcpy(copy.get(), text, size);
    return copy;
}

// A field that begins with a quote runs on, across separators, to the first piece that ends with one, or else to the
// end of the text.
std::optional<std::string_view> TakeQuotable(std::string_view &rest)
{
    const auto first = tesk::TakeField(rest, Separator);
    if (!first || first->front() != Quote)
        return first;
    std::string_view last = *first;
    while (last.back() != Quote) {
        const auto next = tesk::TakeField(rest, Separator);
        last = next ? *next : rest;  // without a next piece `rest` stands, empty, at the end of the text
        if (!next)
            break;
    }
    return std::string_view(first->data(), static_cast<std::size_t>(last.data() + last.size() - first->data()));
}

}  // namespace

CStiParser::CStiParser(const CStiParser &other)
{
    CopyFields(other.m_fields);
}

CStiParser &CStiParser::operator=(const CStiParser &other)
{
    int type = 0;
    int strength = 0;
    bool active = false;
    other.GetStimType(&type);
    other.GetStrength(&strength);
    other.GetActive(&active);
    Init(other.GetDialogID(), type, strength, other.GetDialogData(), other.GetInfoString(), active,
         other.GetStimStates());
    return *this;
}

bool CStiParser::Init(const char *text)
{
    if (text == nullptr || *text == 0)
        return false;
    std::unique_ptr<char[]> buffer = CopyText(text);  // first: `text` may lie in the old buffer
    m_fields = {};
    m_buffer = std::move(buffer);
    if (!m_buffer)
        return false;

    std::string_view rest(m_buffer.get());
    for (const EField required : {DialogID, StimType, Strength}) {
        const auto field = tesk::TakeField(rest, Separator);
        if (!field)
            return false;
        m_fields[required] = SkipSpace(EndField(*field));
    }
    const int strength = StrengthValue(m_fields[Strength]);
    if (strength == -1 || strength == DefaultStrength) {
        InitResources();
        m_fields[Strength] = Override;
    }
    const auto dialogData = TakeQuotable(rest);
    m_fields[DialogData] = dialogData ? EndField(*dialogData) : "";
    m_fields[InfoString] = TakeOptional(rest, "");
    m_fields[Active] = TakeOptional(rest, "0");
    m_fields[StimStates] = TakeOptional(rest, "");
    return true;
}

bool CStiParser::Init(const char *dialogId, int stimType, int strength, const char *dialogData, const char *infoString,
                      bool active, const char *stimStates)
{
    if (stimType < 0 || stimType >= StimTypeCount || strength < 0)
        return false;
    const char *strengthName = StrengthName(strength);
    if (strengthName == nullptr)
        return false;
    return CopyFields({OrEmpty(dialogId), StimTypes[stimType], strengthName, OrEmpty(dialogData), OrEmpty(infoString),
                       active ? "1" : "0", OrEmpty(stimStates)});
}

bool CStiParser::MergeStimInfo(SimpleString::CStr &text) const
{
    if (std::find(m_fields.begin(), m_fields.begin() + Active, nullptr) != m_fields.begin() + Active)
        return false;
    text.Format("%s:%s:%s:%s:%s:%s:", m_fields[DialogID], m_fields[StimType], m_fields[Strength], m_fields[DialogData],
                m_fields[InfoString], m_fields[Active]);
    text += m_fields[StimStates];
    return true;
}

const char *CStiParser::GetStimType(int *type) const
{
    const char *field = m_fields[StimType];
    if (type != nullptr) {
        const auto *const end = std::end(StimTypes);
        const auto *const found = std::find_if(StimTypes, end, [&](const char *name) { return AreEqual(name, field); });
        *type = found != end ? static_cast<int>(found - StimTypes) : -1;
    }
    return field;
}

const char *CStiParser::GetStrength(int *value) const
{
    if (value != nullptr)
        *value = StrengthValue(m_fields[Strength]);
    return m_fields[Strength];
}

const char *CStiParser::GetActive(bool *active) const
{
    if (active != nullptr)
        *active = tesk::ReadInt(OrEmpty(m_fields[Active])) != 0;
    return m_fields[Active];
}

void CStiParser::InitResources()
{
    g_hasResources = true;
}

const char *CStiParser::StrengthName(int value)
{
    InitResources();
    for (const SStrength &strength : Strengths) {
        if (strength.value == value)
            return strength.name;
    }
    return nullptr;
}

int CStiParser::StrengthValue(const char *name)
{
    if (!g_hasResources)
        return -1;
    for (const SStrength &strength : Strengths) {
        if (AreEqual(strength.name, name))
            return strength.value;
    }
    return -1;
}

const char *CStiParser::DialogName(const char *code)
{
    InitResources();
    for (const SDialog &dialog : Dialogs) {
        if (AreEqual(dialog.code, code))
            return dialog.name;
    }
    return nullptr;
}

// Puts copies of all fields into a new buffer. They may lie in the old one, which goes last. Without memory nothing
// changes.
bool CStiParser::CopyFields(const CFields &fields)
{
    std::size_t size = 0;
    for (const char *field : fields)
        size += SizeOf(field);
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[size]);
    if (!buffer)
        return false;
    char *end = buffer.get();
    CFields copies{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] == nullptr)
            continue;
        copies[i] = end;
        end = std::copy_n(fields[i], SizeOf(fields[i]), end);
    }
    m_fields = copies;
    m_buffer = std::move(buffer);
    return true;
}

// Ends a field of the buffer with a zero, where its separator stands.
const char *CStiParser::EndField(std::string_view field)
{
    m_buffer[static_cast<std::size_t>(field.data() + field.size() - m_buffer.get())] = 0;
    return field.data();
}

const char *CStiParser::TakeOptional(std::string_view &rest, const char *absent)
{
    const auto field = tesk::TakeField(rest, Separator);
    return field ? EndField(*field) : absent;
}

bool operator==(const CStiParser &left, const CStiParser &right)
{
    return std::equal(left.m_fields.begin(), left.m_fields.end(), right.m_fields.begin(), AreEqual);
}

void MergeHotKeyData(unsigned long key, const char *data, SimpleString::CStr &text)
{
    // Not "%li", which takes 32 bits on every platform.
    text.Format("%I64d%c%s", static_cast<long long>(static_cast<long>(key)), '/', data);
}

bool ParseHotKeyData(const char *text, unsigned long *key, SimpleString::CStr &data)
{
    const std::string copy(OrEmpty(text));  // first: `text` may be that of `data`
    data.Empty();
    std::string_view rest(copy);
    const auto number = tesk::TakeField(rest, '/');
    if (!number)
        return false;
    if (key != nullptr)
        *key = static_cast<unsigned long>(std::strtol(number->data(), nullptr, 10));  // "/" ends a number
    const auto action = tesk::TakeField(rest, '/');
    if (!action)
        return false;
    data = SimpleString::CStr(action->data(), static_cast<unsigned>(action->size()));
    return true;
}
