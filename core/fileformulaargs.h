// The arguments of file formulas, "/custom", "/txt" and "/mat", taken apart.
#pragma once

#include "base/export.h"
#include "settings/cstr.h"

/// The arguments of a file formula as text; whoever uses them reads the times.
class TESK_API CFileFormulaArgs {
public:
    static constexpr unsigned FLAG_ROW = 1;          ///< "-row"
    static constexpr unsigned FLAG_REL = 2;          ///< "-rel"
    static constexpr unsigned FLAG_TIME_POINTS = 4;  ///< "-time_points"

    SimpleString::CStr m_file;        ///< file name
    SimpleString::CStr m_signal;      ///< signal in the file, or the importers' column or variable
    SimpleString::CStr m_start;       ///< start of the stretch: digits, ".", unit letters
    SimpleString::CStr m_end;         ///< end of the stretch: digits, unit letters
    SimpleString::CStr m_offset;      ///< with a leading "@" if written so
    SimpleString::CStr m_repeat;      ///< argument of "-r"
    SimpleString::CStr m_cancel;      ///< argument of "-cancel", with a leading "@" if written so
    SimpleString::CStr m_interval;    ///< argument of "-interval"
    SimpleString::CStr m_timeSource;  ///< argument of "-time_points" or "-time_var"
    SimpleString::CStr m_point;       ///< argument of "-point"
    unsigned m_flags = 0;             ///< of the flags above
};

// Each takes apart what stands behind a keyword:
//
//     file [, signal [, start [, end]]] [[@]offset] {switch}
//
// Blanks are the byte 32; the file name loses other white space too. A signal may hold blanks and commas between "(" and
// ")" and between backslashes. Switches come in any order, and of a text given twice the last one counts:
//
//     -cancel [@]TIME  -r TIME                                       in all three
//     -row -col -rel -abs -fixed_step -interval TIME -time_points X  in "/txt" and "/mat"
//     -time_var X  -point X                                          in "/mat"
//
// -col, -abs and -fixed_step do nothing: "-row -col" leaves the flag set.
//
// File, signal, start, end, repeat and cancel are emptied first. Deliberate: the other texts and the flags of a record
// that is used again stay until they are overwritten. The result is false for a null text, which changes nothing, and
// for one that is not understood to its end; the record then holds what stands in front of the fault.

/// Reads the arguments of "/custom", where the signal is compulsory. Deliberate: "-rel" is "-r" with the argument "el".
TESK_API bool ParseCustomArgs(const char *text, CFileFormulaArgs &args);

/// Reads the arguments of "/txt". An "-interval" without a digit or a unit is logged as an error.
TESK_API bool ParseTxtArgs(const char *text, CFileFormulaArgs &args);

/// Reads the arguments of "/mat", those of "/txt" and two more.
TESK_API bool ParseMatArgs(const char *text, CFileFormulaArgs &args);
