// The MAT-files in tests/data and what is in them.
#pragma once

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/matlab/mxarray.h"
#include "testpaths.h"

inline const char *const SmallFiles[] = {"octave4.mat", "scipy4.mat"};  // version 4 knows no structures
inline const char *const LargeFiles[] = {"octave6.mat", "octave7.mat", "scipy5.mat", "matio73.mat"};

inline std::string SamplePath(const std::string &name)
{
    return TESK_SOURCE_DIR "/tests/data/" + name;
}

inline std::string BytesOf(const std::string &path)
{
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

/// "3x2 class 6: 1 2 3 4 5 6", of structures "1x1 {f=..., g=...}".
inline std::string Describe(const mxArray *array)
{
    if (array == nullptr)
        return "null";
    std::string text;
    for (const std::size_t size : array->sizes)
        text += (text.empty() ? "" : "x") + std::to_string(size);
    if (array->classId == MatClassStruct) {
        for (std::size_t i = 0; i < array->fieldValues.size(); ++i)
            text += " {" + array->fieldNames[i % array->fieldNames.size()] + "=" +
                    Describe(array->fieldValues[i].get()) + "}";
        return text;
    }
    text += " class " + std::to_string(array->classId);
    for (std::size_t i = 0; array->real != nullptr && i < array->elements; ++i) {
        char number[32];
        std::snprintf(number, sizeof number, " %g", array->real[i]);
        text += number;
    }
    return text;
}
