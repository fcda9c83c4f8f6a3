// The three parsers of file formulas, and what they read as one line of text, for tests.
#pragma once

#include <string>

#include "core/fileformulaargs.h"

using CParser = bool (*)(const char *text, CFileFormulaArgs &args);

struct SParser {
    const char *keyword;
    CParser parse;
};

inline constexpr SParser Parsers[] = {{"custom", ParseCustomArgs}, {"txt", ParseTxtArgs}, {"mat", ParseMatArgs}};

// The record's texts that are not empty, and its flags, in one line.
inline std::string Show(const CFileFormulaArgs &args)
{
    const struct {
        const char *name;
        const SimpleString::CStr &text;
    } fields[] = {{"file", args.m_file},     {"signal", args.m_signal},     {"start", args.m_start},
                  {"end", args.m_end},       {"offset", args.m_offset},     {"repeat", args.m_repeat},
                  {"cancel", args.m_cancel}, {"interval", args.m_interval}, {"source", args.m_timeSource},
                  {"point", args.m_point}};
    std::string shown;
    for (const auto &field : fields) {
        if (!field.text.IsEmpty())
            shown += std::string(field.name) + "=" + static_cast<const char *>(field.text) + "|";
    }
    return shown + std::to_string(args.m_flags);
}

// What a parser makes of a text in a new record; "" if it refuses it.
inline std::string Read(CParser parse, const std::string &text)
{
    CFileFormulaArgs args;
    return parse(text.c_str(), args) ? Show(args) : "";
}
