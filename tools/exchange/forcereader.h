// What the two forms of forces have in common: commands that force signals, read one by one.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/exchange/imported.h"
#include "tools/exchange/importforce.h"
#include "tools/exchange/simpath.h"

namespace tesk {

/// One command that forces a signal.
struct SForced {
    std::string path;
    EStrength strength = EStrength::Override;
    std::string radix;  ///< of plain digits; empty for that of the literals alone
    std::vector<SImportedEvent> events;
    long long repeat = 0;
    std::optional<long long> cancel;
};

/// What a switch of a command stands for.
enum class ESwitch { Freeze, Deposit, Drive, Repeat, Cancel, Radix, Nothing };

struct SSwitch {
    std::string_view name;
    ESwitch meaning;
};

/// The words of a text with blanks between.
std::vector<std::string> BlankSeparated(const std::string &text);

/// Reads a script. What has no equivalent is told with its line.
class CForceReader {
public:
    CForceReader(const SImportOptions &options, CImported &imported) : m_imported(imported), m_options(options) {}
    virtual ~CForceReader() = default;

    void Read(const std::string &script);

protected:
    /// @return false for a command that is none of the form
    virtual bool ReadCommand(const std::vector<std::string> &words) = 0;
    virtual std::span<const SSwitch> Switches() const = 0;
    /// Whether a word is a command of the form.
    virtual bool IsForce(const std::string &word) const = 0;

    long long Time(const std::string &text);

    /// A time that counts from now on, or with "@" from the beginning.
    long long EventTime(const std::string &text);

    void Run(std::vector<std::string> words);

    /// Takes the switches out of a command's words. @return the others behind the command itself
    std::vector<std::string> TakeSwitches(const std::vector<std::string> &words, SForced &forced);

    /// Adds what a command forces to what is known of the signal.
    void Force(const SForced &forced);

    /// Ends what is forced on a signal.
    void Release(const std::string &path);

    /// Adds a value to what a command forces.
    void AddEvent(const std::string &time, const std::string &value, SForced &forced);

    CImported &m_imported;
    int m_line = 0;

private:
    // What is to come of a signal.
    struct SPending {
        std::size_t settled = 0;  // events of commands before the last time of one; in the order of their times
        long long commanded = 0;  // femtoseconds; when the last command came
    };

    void Read(const STclCommand &command);
    void ReadNote(const std::string &comment);
    void ReadType(const std::string &text);
    std::optional<ESwitch> FindSwitch(const std::string &word) const;
    void Switch(ESwitch meaning, const std::string &argument, SForced &forced);
    static std::string Value(const std::string &text, const std::string &radix);
    void Hold(const SImportedEvent &event);
    void Join(SImportedSignal &signal, const SForced &forced, SPending &pending);
    void Settle(SImportedSignal &signal, SPending &pending);
    long long Later(long long time) const;

    const SImportOptions &m_options;
    std::map<std::string, SPending> m_pending;
    std::size_t m_held = 0;  // bytes of events
    long long m_now = 0;     // femtoseconds
    bool m_isUnitTold = false;
};

}  // namespace tesk
