// Any text as what stands behind the keyword of a file formula, and as the values and times of a plain one.
#include <string>
#include <vector>

#include "core/fileformulaargs.h"
#include "core/simpleformulaparser.h"
#include "core/stimulus.h"
#include "core/tokenizer.h"
#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "settings/cstr.h"

namespace fuzz {

namespace {

using SimpleString::CStr;

// Each token is shorter than what it was taken from, so that the walk ends.
void Tokenise(const std::string &text)
{
    CStr rest(text.c_str());
    for (int left = rest.GetLength(); left > 0; left = rest.GetLength()) {
        NextToken(rest, SplitOpen, SplitClose, TokenBlanks);
        Require(rest.GetLength() < left);
    }
    rest = text.c_str();
    for (int left = rest.GetLength(); left > 0; left = rest.GetLength()) {
        SplitChunk(rest, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BehindEveryToken);
        Require(rest.GetLength() < left);
    }
}

}  // namespace

void Switches(std::string_view input)
{
    const std::string text(input);
    for (const auto parse : {ParseCustomArgs, ParseTxtArgs, ParseMatArgs}) {
        CFileFormulaArgs arguments;
        parse(text.c_str(), arguments);
    }
    Tokenise(text);
    for (const bool isBitVector : {true, false}) {
        for (const int width : {0, 1, 5}) {
            std::vector<CStr> elements;
            CSimpleFormulaParser().Run(text.c_str(), elements, width, isBitVector, 1000, 0);
        }
    }
}

}  // namespace fuzz
