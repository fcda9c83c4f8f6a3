// What the tool says of each kind of formula.
#pragma once

#include "formula/kinds/kinds.h"

struct SKindText {
    tesk::EFormulaKind kind;
    const char *form;       ///< how it is written behind the keyword
    const char *advice;     ///< where the library did not say what is wrong
    const char *extension;  ///< added to a file name that does not exist as it stands
};

const SKindText &TextOf(tesk::EFormulaKind kind);
