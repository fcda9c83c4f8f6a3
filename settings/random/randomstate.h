// The running generator of a random vector, shared by the stimuli of its wires.
#pragma once

#include <memory>
#include <unordered_map>

#include "base/scalarinfo.h"
#include "settings/cstr.h"
#include "settings/random.h"

namespace tesk {

/// Draws one number a period. It always knows two of them: the present one, in force until `time`, and the next one,
/// which takes effect there. Whichever wire asks first for what lies behind `time` moves it on for all; it never moves
/// back.
class CRandomState {
public:
    /// @param wholeValue  the value is the whole number in decimal, not one bit of it
    /// @param scalarInfo  alphabet from which the value is taken instead; copied, may be null
    CRandomState(int handle, int length, bool wholeValue, const tesk::CSimpleScalarInfo *scalarInfo,
                 long long startTime);

    /// Reads the settings and makes the first two draws. @return false for a bad formula
    bool Initialize(const char *formula, long long resolution);

    void AddReference() { ++m_references; }
    /// The last reference takes the generator out of the registry and deletes it.
    void Release();

    /// @return false never; what lies behind the next draw's time reads "0"
    bool GetValue(int wire, long long time, SimpleString::CStr &value) const;
    /// The time of the first draw behind `time`, -1 with a period of 0. A draw that is over is drawn anew.
    long long GetNextEventTime(long long time);
    int GetHandle() const { return m_handle; }
    const tesk::CRandomStimulusInfo &GetSettings() const { return m_settings; }

private:
    int Draw();
    void Step();
    SimpleString::CStr ValueText(int wire, int number) const;

    tesk::CRandomStimulusInfo m_settings;
    std::unique_ptr<tesk::CSimpleScalarInfo> m_scalarInfo;
    int m_seed = 0;
    int m_length;
    int m_references = 0;
    int m_handle;
    long long m_period = 0;  // ticks
    long long m_time;        // ticks; when m_next takes effect
    int m_present = 0;
    int m_next = 0;
    bool m_wholeValue;
    bool m_hasDrawn = false;
};

/// All generators by handle. One without a wire stays for the life of the process.
std::unordered_map<int, CRandomState *> &RandomRegistry();

}  // namespace tesk
