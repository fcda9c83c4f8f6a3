// The program that reads a MAT-file for the bundled libmat: `tesk-matread MEMORY SECONDS FILE [VARIABLE]` writes the
// stream of matstream.h. It is a process of its own because the libraries below it crash on some damaged files.
#include <matio.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <limits>
#include <vector>

#include "platform/matlab/mathdf.h"
#include "platform/matlab/matput.h"
#include "platform/matlab/matstream.h"
#include "platform/matlab/matwhole.h"
#include "platform/matlab/mxarray.h"

namespace {

void Limit(int resource, rlim_t value)
{
    const rlimit limit = {value, value};
    setrlimit(static_cast<__rlimit_resource_t>(resource), &limit);
}

// No more memory and time than told, no file written, a core neither. The alarm is for a host that has died.
void LimitThisProcess(const char *memory, const char *seconds)
{
    const rlim_t time = std::strtoull(seconds, nullptr, 10);
    Limit(RLIMIT_AS, std::strtoull(memory, nullptr, 10));
    Limit(RLIMIT_CPU, time);
    Limit(RLIMIT_CORE, 0);
    Limit(RLIMIT_FSIZE, 0);
    alarm(static_cast<unsigned>(time) * 3);
}

std::int32_t ClassOf(const matvar_t &variable)
{
    const std::int32_t complex = variable.isComplex != 0 ? MarkComplex : 0;
    const std::int32_t sparse = variable.class_type == MAT_C_SPARSE ? MarkSparse : 0;
    if (variable.isLogical != 0)
        return MatClassLogical | sparse;
    switch (variable.class_type) {
    case MAT_C_SPARSE:
        return MatClassUnknown | sparse | complex;  // MATLAB says double, but there is no column of them to point at
    case MAT_C_OBJECT: return MatClassObject;
    default: return static_cast<std::int32_t>(variable.class_type) | complex;
    }
}

std::vector<std::uint64_t> SizesOf(const matvar_t &variable)
{
    if (variable.rank < 0 || variable.rank > int(MaximumRank) || (variable.rank > 0 && variable.dims == nullptr))
        GiveUp();
    return {variable.dims, variable.dims + variable.rank};
}

void PutDoubles(const matvar_t &variable, std::size_t elements)
{
    Put(static_cast<std::uint64_t>(elements));
    if (elements == 0)
        return;
    const void *real = variable.data;
    if (variable.isComplex != 0 && real != nullptr)
        real = static_cast<const mat_complex_split_t *>(real)->Re;
    if (real == nullptr || variable.data_type != MAT_T_DOUBLE || elements > variable.nbytes / sizeof(double))
        GiveUp();
    Put(real, elements * sizeof(double));
}

void PutNode(const matvar_t *variable, int depth);

void PutStructure(const matvar_t &variable, std::size_t elements, int depth)
{
    const std::uint32_t fields = Mat_VarGetNumberOfFields(const_cast<matvar_t *>(&variable));
    char *const *names = Mat_VarGetStructFieldnames(&variable);
    if (fields > MaximumFields || (fields > 0 && names == nullptr))
        GiveUp();
    Put(fields);
    for (std::uint32_t i = 0; i < fields; ++i) {
        const char *name = names[i] != nullptr ? names[i] : "";
        PutName({name, strnlen(name, MaximumNameLength)});
    }
    std::size_t nodes = 0;
    if (__builtin_mul_overflow(elements, std::size_t(fields), &nodes))
        GiveUp();
    const auto *values = static_cast<matvar_t *const *>(variable.data);
    const std::size_t stored = values != nullptr ? variable.nbytes / sizeof(matvar_t *) : 0;
    for (std::size_t i = 0; i < nodes; ++i)
        PutNode(i < stored ? values[i] : nullptr, depth + 1);
}

void PutNode(const matvar_t *variable, int depth)
{
    if (variable == nullptr || depth > MaximumDepth) {
        PutNothing();
        return;
    }
    const std::int32_t classId = ClassOf(*variable);
    const std::size_t elements = PutBegin(classId, SizesOf(*variable));
    if ((classId & ClassMask) == MatClassDouble)
        PutDoubles(*variable, elements);
    else if (classId == MatClassStruct)
        PutStructure(*variable, elements, depth);
}

// Goes through all variables without their values, so that a file whose table of contents is damaged is found out.
void PassVariables(mat_t *file)
{
    while (matvar_t *variable = Mat_VarReadNextInfo(file))
        Mat_VarFree(variable);
}

// The first variable of a name; null if there is none, or not to its end.
matvar_t *ReadVariable(mat_t *file, const char *path, const char *name)
{
    const mat_ft version = Mat_GetVersion(file);
    std::size_t left = std::numeric_limits<std::size_t>::max();
    if (version == MAT_FT_MAT4 || version == MAT_FT_MAT5)
        left = CountWholeVariables(path, version == MAT_FT_MAT4);
    for (; left > 0; --left) {
        matvar_t *variable = Mat_VarReadNextInfo(file);
        if (variable == nullptr)
            return nullptr;
        const bool isWanted = variable->name != nullptr && std::strcmp(variable->name, name) == 0;
        Mat_VarFree(variable);
        if (isWanted)
            return Mat_VarRead(file, name);
    }
    return nullptr;
}

// @param name  of a variable; null for a mere look at the file
void PutOfHdfFile(const char *path, const char *name)
{
    Put(StreamBegin);
    if (name != nullptr)
        PutHdfVariable(path, name);
    else
        PassHdfVariables(path);
}

void PutOfOlderFile(const char *path, const char *name)
{
    mat_t *file = Mat_Open(path, MAT_ACC_RDONLY);
    if (file == nullptr)
        GiveUp();
    Put(StreamBegin);
    if (name != nullptr)
        PutNode(ReadVariable(file, path, name), 0);
    else
        PassVariables(file);
}

}  // namespace

int main(int count, char **arguments)
{
    if (count != 4 && count != 5) {
        std::fputs("tesk-matread reads MAT-files for libmat.so, which starts it.\n", stderr);
        return 2;
    }
    LimitThisProcess(arguments[1], arguments[2]);
    const char *path = arguments[3];
    const char *name = count == 5 ? arguments[4] : nullptr;
    if (IsHdfFile(path))
        PutOfHdfFile(path, name);
    else
        PutOfOlderFile(path, name);
    Put(StreamEnd);
    if (std::fflush(stdout) != 0)
        GiveUp();
    _exit(EXIT_SUCCESS);  // whatever is left is not worth the time of giving it back
}
