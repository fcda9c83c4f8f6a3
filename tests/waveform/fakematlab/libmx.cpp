// The libmx of the made-up MATLAB.
#include <cmath>
#include <cstring>

#include "waveform/fakematlab/variable.h"

FAKE_MATLAB_API int mxGetClassID(const mxArray *array)
{
    return array->classId;
}

FAKE_MATLAB_API std::size_t mxGetNumberOfDimensions(const mxArray *array)
{
    return array->rank;
}

FAKE_MATLAB_API std::size_t mxGetNumberOfElements(const mxArray *array)
{
    return array->elements;
}

FAKE_MATLAB_API int mxGetNumberOfFields(const mxArray *array)
{
    return array->fields;
}

FAKE_MATLAB_API const void *mxGetDimensions(const mxArray *array)
{
    return array->sizes;
}

FAKE_MATLAB_API double *mxGetPr(const mxArray *array)
{
    return array->values;
}

FAKE_MATLAB_API double mxGetNaN()
{
    return std::nan("");
}

FAKE_MATLAB_API bool mxIsNaN(double value)
{
    return std::isnan(value);
}

FAKE_MATLAB_API bool mxIsStruct(const mxArray *array)
{
    return array->classId == 2;
}

FAKE_MATLAB_API int mxGetFieldNumber(const mxArray *, const char *)
{
    return -1;
}

FAKE_MATLAB_API const char *mxGetFieldNameByNumber(const mxArray *array, int number)
{
    return array->field != nullptr && number == 0 ? "f" : nullptr;
}

FAKE_MATLAB_API mxArray *mxGetField(const mxArray *array, std::size_t index, const char *name)
{
    return index < array->elements && std::strcmp(name, "f") == 0 ? array->field : nullptr;
}
