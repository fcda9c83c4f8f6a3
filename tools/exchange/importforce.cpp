#include "tools/exchange/importforce.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "tools/commandline.h"
#include "tools/exchange/forcereader.h"
#include "tools/quote.h"

namespace tesk {

namespace {

constexpr SSwitch QuestaSwitches[] = {{"-freeze", ESwitch::Freeze},
                                      {"-deposit", ESwitch::Deposit},
                                      {"-drive", ESwitch::Drive},
                                      {"-repeat", ESwitch::Repeat},
                                      {"-cancel", ESwitch::Cancel}};
constexpr SSwitch VivadoSwitches[] = {{"-radix", ESwitch::Radix},
                                      {"-repeat_every", ESwitch::Repeat},
                                      {"-cancel_after", ESwitch::Cancel},
                                      {"-quiet", ESwitch::Nothing},
                                      {"-verbose", ESwitch::Nothing}};

class CQuestaReader final : public CForceReader {
public:
    using CForceReader::CForceReader;

private:
    std::span<const SSwitch> Switches() const override { return QuestaSwitches; }
    bool IsForce(const std::string &word) const override { return word == "force" || word == "noforce"; }

    bool ReadCommand(const std::vector<std::string> &words) override
    {
        if (words[0] == "run") {
            Run(words);
            return true;
        }
        if (words[0] == "noforce") {
            for (std::size_t i = 1; i < words.size(); ++i)
                Release(words[i]);
            return true;
        }
        if (words[0] != "force")
            return false;
        SForced forced;
        const std::vector<std::string> rest = TakeSwitches(words, forced);
        if (rest.empty())
            throw CRefusal("it names no signal");
        forced.path = rest[0];
        std::string list;
        for (std::size_t i = 1; i < rest.size(); ++i)
            list += rest[i] + ' ';
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t comma = std::min(list.find(',', at), list.size());
            ReadEvent(BlankSeparated(list.substr(at, comma - at)), forced);
            at = comma + 1;
        }
        Force(forced);
        return true;
    }

    // VALUE [TIME [UNIT]]
    void ReadEvent(const std::vector<std::string> &words, SForced &forced)
    {
        if (words.empty())
            throw CRefusal("a value is missing");
        if (words.size() > 3)
            throw CRefusal(Quote(words[3]) + " is too much; write VALUE TIME parts with commas between");
        const std::string time = words.size() == 1 ? "0" : words.size() == 2 ? words[1] : words[1] + words[2];
        AddEvent(time, words[0], forced);
    }
};

class CVivadoReader final : public CForceReader {
public:
    using CForceReader::CForceReader;

private:
    std::span<const SSwitch> Switches() const override { return VivadoSwitches; }
    bool IsForce(const std::string &word) const override { return word == "add_force" || word == "remove_forces"; }

    bool ReadCommand(const std::vector<std::string> &words) override
    {
        if (words[0] == "run") {
            Run(words);
            return true;
        }
        if (words[0] == "remove_forces")
            throw CRefusal("forces cannot be told apart here; let one end with -cancel_after");
        if (words[0] != "add_force")
            return false;
        SForced forced;
        const std::vector<std::string> rest = TakeSwitches(words, forced);
        if (rest.empty())
            throw CRefusal("it names no signal");
        forced.path = rest[0];
        const bool isNumber = forced.radix.starts_with("dec") || forced.radix.starts_with("unsigned");
        if (forced.radix.empty() || isNumber)
            forced.radix = isNumber ? "" : "plain";
        for (std::size_t i = 1; i < rest.size(); ++i)
            ReadEvent(BlankSeparated(rest[i]), forced);
        Force(forced);
        return true;
    }

    // {VALUE [TIME [UNIT]]}
    void ReadEvent(const std::vector<std::string> &words, SForced &forced)
    {
        if (words.empty() || words.size() > 3)
            throw CRefusal("a value and its time are written {VALUE TIME}");
        const std::string time = words.size() == 1 ? "0" : words.size() == 2 ? words[1] : words[1] + words[2];
        AddEvent(time, words[0], forced);
    }
};

}  // namespace

void ImportQuestaForces(const std::string &script, const SImportOptions &options, CImported &imported)
{
    CQuestaReader(options, imported).Read(script);
}

void ImportVivadoForces(const std::string &script, const SImportOptions &options, CImported &imported)
{
    CVivadoReader(options, imported).Read(script);
}

}  // namespace tesk
