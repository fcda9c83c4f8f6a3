// What a signal keeps in its property table: display settings, stimulator, hot key.
#include <cstring>
#include <iterator>

#include "base/wrap.h"
#include "core/stimulus.h"
#include "signal/tree/signalimp.h"
#include "signal/tree/signalwalk.h"

namespace tesk {

namespace {

constexpr const char *Mode = "Mode";
constexpr const char *Color = "Color";
constexpr const char *DisplayMode = "Display Mode";
constexpr const char *StimulatorType = "Stimulator Type";
constexpr const char *StimulatorStrength = "Stimulator Strength";
constexpr const char *StimulatorFormula = "Stimulator Formula";
constexpr const char *StimulatorClock = "Stimulator Clock";
constexpr const char *HotKey = "Hot-Key";
constexpr const char *Handle = "Handle";

// Types of a stimulator.
enum EStimulator { FormulaStimulator = 1, HotKeyStimulator = 2, ClockStimulator = 3 };

}  // namespace

void CSignalImp::SetProperty(const char *name, const char *value)
{
    if (name == nullptr)
        return;
    const SimpleString::CStr text(value);
    m_properties.Set(name, text);
    // Deliberate: other than the table, these four go by letter case.
    if (std::strcmp(name, Handle) == 0)
        m_handle = ReadInt(text);
    else if (std::strcmp(name, "MaxTime") == 0)
        m_maxTime = _atoi64(text);
    else if (std::strcmp(name, "VBus") == 0)
        SetFlag(VBus, ReadInt(text) != 0);
    else if (std::strcmp(name, "Name") == 0)
        m_name = text;
}

void CSignalImp::SetHandle(int handle)
{
    m_handle = handle;
    if (handle == -1)
        m_properties.Remove(Handle);
    else if (m_properties.GetNumber(Handle, -1) != handle)
        m_properties.SetNumber(Handle, handle);
}

int CSignalImp::GetMode()
{
    constexpr int ModeOfRoot = 6;
    if (GetProperty(Mode) != nullptr || GetParent() == nullptr)
        return m_properties.GetNumber(Mode, ModeOfRoot);
    return GetParent()->GetMode();
}

void CSignalImp::SetMode(int mode)
{
    m_properties.SetNumber(Mode, mode);
}

int CSignalImp::GetColor()
{
    return m_properties.GetNumber(Color, 0);
}

void CSignalImp::SetColor(int color)
{
    m_properties.SetNumber(Color, color);
}

int CSignalImp::GetDisplayMode()
{
    return m_properties.GetNumber(DisplayMode, 0);
}

long CSignalImp::SetDisplayMode(int mode)
{
    if (mode == 0 && m_stdType == 0)
        return E_INVALIDARG;
    m_properties.SetNumber(DisplayMode, mode);
    return S_OK;
}

int CSignalImp::GetDisplayRadix()
{
    constexpr int Radices[] = {1, 2, 8, 10, 16};
    const int mode = GetDisplayMode();
    return mode >= 0 && mode < static_cast<int>(std::size(Radices)) ? Radices[mode] : Radices[0];
}

long CSignalImp::GetStimulator(int *type, int *strength, char *formula, unsigned size)
{
    if (type != nullptr)
        *type = m_properties.GetNumber(StimulatorType, -1);
    if (strength != nullptr)
        *strength = m_properties.GetNumber(StimulatorStrength, -1);
    if (formula == nullptr)
        return S_OK;
    const char *stored = GetProperty(StimulatorFormula);
    const char *text = stored != nullptr ? stored : "";
    const std::size_t room = std::strlen(text) + 1;
    if (room > size)
        return E_OUTOFMEMORY;
    std::memcpy(formula, text, room);
    return S_OK;
}

void CSignalImp::SetStimulator(int type, int strength, const char *formula)
{
    const SimpleString::CStr kept(formula);  // it may be the text of a property that goes
    m_properties.Remove(HotKey);
    if (type == -1 || kept.IsEmpty()) {
        // Deliberate: "Stimulator Clock" stays.
        m_properties.Remove(StimulatorFormula);
        m_properties.Remove(StimulatorType);
        m_properties.Remove(StimulatorStrength);
        return;
    }
    if (type >= 0 && type <= FormulaStimulator) {
        SetFormula(type, strength, kept);
    } else if (type == HotKeyStimulator) {
        SetHotKey(static_cast<signed char>(kept[0]));
    } else if (type == ClockStimulator) {
        m_properties.Set(StimulatorClock, kept);
        m_properties.SetNumber(StimulatorType, ClockStimulator);
        m_properties.SetNumber(StimulatorStrength, strength);
    }
}

// What is kept is the parser's text, never the caller's. A formula that cannot be parsed leaves the old one in place.
void CSignalImp::SetFormula(int type, int strength, const char *formula)
{
    const StimulusPtr stimulus(IStimulus::Create(formula, 0, 1000, nullptr, false, false));
    if (stimulus == nullptr)
        return;
    SimpleString::CStr canonical;
    stimulus->GetFormula(canonical);
    if (canonical.IsEmpty())
        m_properties.Remove(StimulatorFormula);
    else
        m_properties.Set(StimulatorFormula, canonical);
    m_properties.SetNumber(StimulatorType, type);
    if (strength == -1)
        m_properties.Remove(StimulatorStrength);
    else
        m_properties.SetNumber(StimulatorStrength, strength);
}

int CSignalImp::GetHotKey()
{
    return m_properties.GetNumber(HotKey, 0);
}

void CSignalImp::SetHotKey(int key)
{
    if (key == 0)
        m_properties.Remove(HotKey);
    else
        m_properties.SetNumber(HotKey, key);
    m_properties.SetNumber(StimulatorType, HotKeyStimulator);  // deliberate: for a key of 0 too
    m_properties.Remove(StimulatorFormula);
    m_properties.Remove(StimulatorClock);
    ForEachChild(*this, [key](ISignal &child) { child.SetHotKey(key); });
}

void CSignalImp::SetValueTextOption(bool on)
{
    SetFlag(ValueTextOption, on);
    ForEachChild(*this, [on](ISignal &child) { child.SetValueTextOption(on); });
}

}  // namespace tesk
