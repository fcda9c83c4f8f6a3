// The random stimulator: its settings, and the stimulus of one wire.
#pragma once

#include <vector>

#include "base/export.h"
#include "core/stimulus.h"
#include "settings/cstr.h"

namespace tesk {

class CRandomState;

/// Settings of a random stimulator: which distribution, its parameters, the seed, and the time between draws. The
/// distributions are those of Verilog's `$random` and `$dist_...` (IEEE Std 1364-2005, 17.9).
class TESK_API CRandomStimulusInfo {
public:
    enum ERandomStimulusKind {
        KindNone = 0,  ///< nothing set yet
        KindUniform = 1,
        KindNormal = 2,
        KindExpotential = 3,
        KindPoisson = 4,
        KindChiSquare = 5,
        KindT = 6,
        KindErlang = 7,
        KindRandom = 8,  ///< evenly over all 32-bit numbers
    };

    // Bits of the error status.
    static constexpr unsigned BadMean = 0x004;     ///< mean below 1, exponential and Poisson
    static constexpr unsigned BadDegrees = 0x040;  ///< degrees of freedom below 1, chi-square and t
    static constexpr unsigned BadOrder = 0x080;    ///< order below 1, Erlang
    static constexpr unsigned BadText = 0x100;     ///< `InitializeFromInternalFormula` got no valid text

    CRandomStimulusInfo() = default;
    CRandomStimulusInfo(const CRandomStimulusInfo &) = default;
    CRandomStimulusInfo &operator=(const CRandomStimulusInfo &) = default;

    ERandomStimulusKind GetDistributionKind() const { return m_kind; }
    /// The time between draws. @param unit  receives its time unit id
    double GetPeriod(int &unit) const;
    void SetPeriod(double period, int unit);
    /// 0 if the settings are good, else the bits above.
    unsigned GetErrorStatus() const { return m_errorStatus; }

    // Each setter stores the kind, the seed and its parameters, good or not, and keeps the other fields.
    // @return whether the parameters are good. Deliberate: Erlang's mean is not checked, nor is anything of the
    // uniform, the normal and the plain draw.
    bool SetUniformParameters(int seed, int low, int high);
    bool SetNormalParameters(int seed, int mean, int deviation);
    bool SetExpotentialParameters(int seed, int mean);
    bool SetPoissonParameters(int seed, int mean);
    bool SetChiSquareParameters(int seed, int degrees);
    bool SetTParameters(int seed, int degrees);
    bool SetErlangParameters(int seed, int mean, int order);
    bool SetRandomParameters(int seed);

    // Each getter gives the fields, whatever the kind. @return false, with nothing written, if the status is not 0
    bool GetUniformParameters(int &seed, int &low, int &high) const;
    bool GetNormalParameters(int &seed, int &mean, int &deviation) const;
    bool GetExpotentialParameters(int &seed, int &mean) const;
    bool GetPoissonParameters(int &seed, int &mean) const;
    bool GetChiSquareParameters(int &seed, int &degrees) const;
    bool GetTParameters(int &seed, int &degrees) const;
    bool GetErlangParameters(int &seed, int &mean, int &order) const;
    bool GetRandomParameters(int &seed) const;

    /// Writes the settings as a formula such as "\RANDOM\1\5\0\10\20.000000ns": kind, seed, parameters, period.
    /// @return false, `text` unchanged, if the status is not 0
    bool GenerateInternalFormula(SimpleString::CStr &text) const;
    /// Reads such a formula, in double quotes or not; the keyword in this letter case only. Numbers are read as `atoi`
    /// does, and a run of backslashes separates as one does.
    /// @return false for a text with too few fields or an unknown kind (`BadText`), for parameters that the setter
    ///         refuses, and for a period that is no time or has no unit (no bit of its own). The period is stored all
    ///         the same: 0 where there is none to store
    bool InitializeFromInternalFormula(const char *text);

protected:
    int GetSeed() const { return m_seed; }
    bool ValidateStimulatorSettings();

private:
    struct SParameters;
    TESK_LOCAL static const SParameters &ParametersOf(ERandomStimulusKind kind);
    TESK_LOCAL bool Store(ERandomStimulusKind kind, int seed, int first = 0, int second = 0);
    TESK_LOCAL bool Load(ERandomStimulusKind kind, int &seed, int *first = nullptr, int *second = nullptr) const;

    double m_period = 0.0;
    int m_periodUnit = 0;
    ERandomStimulusKind m_kind = KindNone;
    int m_seed = 0;
    int m_mean = 0;       // normal, exponential, Poisson, Erlang
    int m_low = 0;        // uniform
    int m_high = 0;       // uniform
    int m_deviation = 0;  // normal
    int m_degrees = 0;    // chi-square, t
    int m_order = 0;      // Erlang
    unsigned m_errorStatus = 0;
};

/// The stimulus of one wire of a random vector, or of a whole random signal. The wires of a vector share one generator,
/// which the first wire to pass a draw's time steps for all of them.
class CRandomStimulus final : public IStimulus {
public:
    CRandomStimulus() = default;
    CRandomStimulus(const CRandomStimulus &) = delete;
    CRandomStimulus &operator=(const CRandomStimulus &) = delete;

    /// Attaches to the generator that a per-wire formula names, or to a new one for a settings formula.
    /// @param startTime   ticks; when a new generator starts
    /// @param simRes      femtoseconds per tick
    /// @param scalarInfo  alphabet of a new generator's values; copied, may be null
    /// @return false if there is no such generator; called once
    bool Initialize(const char *formula, long long startTime, long long simRes, const CSimpleScalarInfo *scalarInfo);

    /// Gives the generator up, which ends with its last wire, and deletes the object.
    void Destroy() override;
    bool GetValue(long long time, SimpleString::CStr &value) override;
    long long GetNextEventTime(long long time) override;
    /// The settings for wire 0, the per-wire form for the others.
    void GetFormula(SimpleString::CStr &formula) override;
    bool IsFinishedAt(long long time) override;
    int CheckSettings(long long *time) override;

private:
    ~CRandomStimulus();

    int m_wire = -1;
    CRandomState *m_state = nullptr;
};

}  // namespace tesk

/// Makes the generator of a vector and the formulas of its wires, "\random\wire\<wire>\<handle>".
/// @param length      number of wires
/// @param resolution  femtoseconds per tick
/// @param wires       receives the formulas; emptied on failure
/// @param wholeValue  the value is the whole number in decimal, not one bit of it
/// @param scalarInfo  alphabet from which the value is taken instead; copied, may be null
/// @param startTime   ticks
/// @return the generator's handle, or -1 for a formula that cannot be used
int CreateRandomWires(const char *formula, int length, long long resolution, std::vector<SimpleString::CStr> &wires,
                      bool wholeValue, const tesk::CSimpleScalarInfo *scalarInfo, long long startTime);
