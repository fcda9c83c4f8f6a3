#include "fuzz/support/formulas.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <string_view>

#include "core/kinds/keywords.h"
#include "core/stimiterator.h"
#include "formula/kinds/keywordsearch.h"

namespace fuzz {

namespace {

constexpr int Steps = 40;

void WalkTimes(IStimulus &stimulus)
{
    SimpleString::CStr text;
    long long time = -1;
    for (int i = 0; i < Steps && (i == 0 || time != -1); ++i) {
        time = stimulus.GetNextEventTime(time);
        stimulus.GetValue(time, text);
        stimulus.GetTimeString(time, text);
        stimulus.IsFinishedAt(time);
    }
}

void AskAtTheEdges(IStimulus &stimulus)
{
    SimpleString::CStr text;
    for (const long long edge : {LLONG_MIN, LLONG_MIN + 1, -1LL, 0LL, LLONG_MAX - 1, LLONG_MAX}) {
        long long binary = 0;
        stimulus.GetNextEventTime(edge);
        stimulus.GetValue(edge, text);
        stimulus.GetBinary8BytesValue(edge, binary);
        stimulus.IsFinishedAt(edge);
    }
}

bool IsKeyword(std::string_view text)
{
    constexpr std::string_view Keywords[] = {tesk::CustomKeyword, tesk::TxtKeyword, tesk::MatKeyword, tesk::BrelKeyword,
                                             "/clk"};
    return std::ranges::any_of(Keywords, [&](std::string_view keyword) {
        return tesk::CKeywordSearch(std::string(text.substr(0, keyword.size())).c_str()).Has(keyword);
    });
}

}  // namespace

IStimulus *Unmarked(IStimulus *stimulus)
{
    return reinterpret_cast<IStimulus *>(reinterpret_cast<std::uintptr_t>(stimulus) & ~std::uintptr_t{1});
}

void Walk(IStimulus &stimulus)
{
    SimpleString::CStr text;
    stimulus.CheckSettings(nullptr);
    stimulus.GetRepeatString(text);
    stimulus.GetCancelString(text);
    stimulus.GetRepeatRate();
    stimulus.GetRepeatRateInSimUnits();
    WalkTimes(stimulus);
    AskAtTheEdges(stimulus);
    CStimIterator iterator(&stimulus);
    for (int i = 0; i < Steps; ++i) {
        ISimpleStimulus *const event = iterator.Next();
        if (event == nullptr)
            break;
        event->GetTimeString(text);
        event->GetValue(text);
    }
}

bool StaysHere(const std::string &formula)
{
    const std::string_view text = formula;
    for (std::size_t at = 0; (at = text.find('/', at)) != std::string_view::npos; ++at) {
        if (!IsKeyword(text.substr(at)))
            return false;
    }
    return true;
}

}  // namespace fuzz
