// The bundled libmx: the part of MATLAB's library of arrays that a reader of MAT-files needs.
#include <cmath>
#include <cstdlib>
#include <limits>

#include "platform/matlab/mxarray.h"

namespace {

int FindField(const mxArray &array, const char *name)
{
    for (std::size_t i = 0; i < array.fieldNames.size(); ++i) {
        if (array.fieldNames[i] == name)
            return static_cast<int>(i);
    }
    return -1;
}

}  // namespace

TESK_MATLAB_API int mxGetClassID(const mxArray *array)
{
    return array->classId;
}

TESK_MATLAB_API mwSize mxGetNumberOfDimensions(const mxArray *array)
{
    return array->sizes.size();
}

TESK_MATLAB_API std::size_t mxGetNumberOfElements(const mxArray *array)
{
    return array->elements;
}

TESK_MATLAB_API int mxGetNumberOfFields(const mxArray *array)
{
    return static_cast<int>(array->fieldNames.size());
}

TESK_MATLAB_API const mwSize *mxGetDimensions(const mxArray *array)
{
    return array->sizes.data();
}

TESK_MATLAB_API double *mxGetPr(const mxArray *array)
{
    return array->real.get();
}

TESK_MATLAB_API double mxGetNaN()
{
    return std::numeric_limits<double>::quiet_NaN();
}

TESK_MATLAB_API bool mxIsNaN(double value)
{
    return std::isnan(value);
}

TESK_MATLAB_API bool mxIsStruct(const mxArray *array)
{
    return array->classId == MatClassStruct;
}

TESK_MATLAB_API bool mxIsComplex(const mxArray *array)
{
    return array->isComplex;
}

TESK_MATLAB_API bool mxIsSparse(const mxArray *array)
{
    return array->isSparse;
}

TESK_MATLAB_API int mxGetFieldNumber(const mxArray *array, const char *name)
{
    return FindField(*array, name);
}

TESK_MATLAB_API const char *mxGetFieldNameByNumber(const mxArray *array, int number)
{
    const std::size_t place = static_cast<std::size_t>(number);
    return number >= 0 && place < array->fieldNames.size() ? array->fieldNames[place].c_str() : nullptr;
}

TESK_MATLAB_API mxArray *mxGetField(const mxArray *array, mwIndex index, const char *name)
{
    const int field = FindField(*array, name);
    if (field < 0 || index >= array->elements)
        return nullptr;
    const std::size_t place = index * array->fieldNames.size() + static_cast<std::size_t>(field);
    return place < array->fieldValues.size() ? array->fieldValues[place].get() : nullptr;
}

TESK_MATLAB_API void mxFree(void *block)
{
    std::free(block);
}
