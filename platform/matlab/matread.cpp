// The program that reads a MAT-file for the bundled libmat: `tesk-matread MEMORY SECONDS FILE [list | variable NAME]` writes
// the stream of matstream.h. It is a process of its own because the libraries below it crash on some damaged files.
#include <matio.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
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
#if !defined(TESK_COVERAGE)
    Limit(RLIMIT_FSIZE, 0);
#endif
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

// The most fields of elements that the file can hold: each has a tag of 8 bytes, and zlib packs 1032 bytes into one at best.
std::size_t g_mostNodes = 0;

void LimitNodes(const char *path)
{
    constexpr std::size_t BytesOfTag = 8, MostPacking = 1032;
    struct stat status = {};
    if (stat(path, &status) != 0)
        GiveUp();
    g_mostNodes = static_cast<std::size_t>(status.st_size) / BytesOfTag * MostPacking;
}

void PutNode(const matvar_t *variable, EDetail detail, int depth);

void PutStructure(const matvar_t &variable, std::size_t elements, EDetail detail, int depth)
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
    elements = detail == EDetail::Values ? elements : std::min<std::size_t>(elements, 1);
    std::size_t nodes = 0;
    if (__builtin_mul_overflow(elements, std::size_t(fields), &nodes) || nodes > g_mostNodes)
        GiveUp();
    const auto *values = static_cast<matvar_t *const *>(variable.data);
    const std::size_t stored = values != nullptr ? variable.nbytes / sizeof(matvar_t *) : 0;
    for (std::size_t i = 0; i < nodes; ++i)
        PutNode(i < stored ? values[i] : nullptr, detail, depth + 1);
}

void PutNode(const matvar_t *variable, EDetail detail, int depth)
{
    if (variable == nullptr || depth > MaximumDepth) {
        PutNothing();
        return;
    }
    const std::int32_t classId = ClassOf(*variable);
    const std::size_t elements = PutBegin(classId, SizesOf(*variable));
    if ((classId & ClassMask) == MatClassDouble && detail == EDetail::Values)
        PutDoubles(*variable, elements);
    else if (classId == MatClassStruct)
        PutStructure(*variable, elements, detail, depth);
}

// Goes through all variables without their values, so that a file whose table of contents is damaged is found out.
void PassVariables(mat_t *file)
{
    while (matvar_t *variable = Mat_VarReadNextInfo(file))
        Mat_VarFree(variable);
}

// How many variables of a file are there to their last byte.
SWholeVariables WholeVariablesOf(mat_t *file, const char *path)
{
    const mat_ft version = Mat_GetVersion(file);
    if (version == MAT_FT_MAT4 || version == MAT_FT_MAT5)
        return CountWholeVariables(path, version == MAT_FT_MAT4);
    return {std::numeric_limits<std::size_t>::max(), true};
}

// Names and headers of all variables. There is no list of a file that was cut off.
void PutList(mat_t *file, const char *path)
{
    SWholeVariables whole = WholeVariablesOf(file, path);
    if (!whole.isAll)
        GiveUp();
    for (; whole.count > 0; --whole.count) {
        matvar_t *variable = Mat_VarReadNextInfo(file);
        if (variable == nullptr)
            GiveUp();
        if (variable->name != nullptr && *variable->name != '\0') {
            Put(std::uint8_t{1});
            PutName({variable->name, strnlen(variable->name, MaximumNameLength)});
            PutNode(variable, EDetail::Headers, 0);
        }
        Mat_VarFree(variable);
    }
    Put(std::uint8_t{0});
}

// The first variable of a name; null if there is none, or not to its end.
matvar_t *ReadVariable(mat_t *file, const char *path, const char *name)
{
    for (std::size_t left = WholeVariablesOf(file, path).count; left > 0; --left) {
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

// What is asked of a file.
struct SRequest {
    const char *path;
    const char *name = nullptr;  // of a variable; null for a list or a mere look at the file
    bool isList = false;
};

void PutOfHdfFile(const SRequest &request)
{
    Put(StreamBegin);
    if (request.name != nullptr)
        PutHdfVariable(request.path, request.name);
    else if (request.isList)
        PutHdfList(request.path);
    else
        PassHdfVariables(request.path);
}

void PutOfOlderFile(const SRequest &request)
{
    const auto [path, name, isList] = request;
    LimitNodes(path);
    mat_t *file = Mat_Open(path, MAT_ACC_RDONLY);
    if (file == nullptr)
        GiveUp();
    Put(StreamBegin);
    if (name != nullptr)
        PutNode(ReadVariable(file, path, name), EDetail::Values, 0);
    else if (isList)
        PutList(file, path);
    else
        PassVariables(file);
}

std::optional<SRequest> ReadRequest(char **arguments, int count)
{
    const std::string_view word = count > 4 ? arguments[4] : "";
    if (count == 4)
        return SRequest{arguments[3]};
    if (count == 5 && word == "list")
        return SRequest{arguments[3], nullptr, true};
    if (count == 6 && word == "variable")
        return SRequest{arguments[3], arguments[5]};
    return std::nullopt;
}

}  // namespace

int main(int count, char **arguments)
{
    const std::optional<SRequest> request = ReadRequest(arguments, count);
    if (!request) {
        std::fputs("tesk-matread reads MAT-files for libmat.so, which starts it.\n", stderr);
        return 2;
    }
    LimitThisProcess(arguments[1], arguments[2]);
    if (IsHdfFile(request->path))
        PutOfHdfFile(*request);
    else
        PutOfOlderFile(*request);
    Put(StreamEnd);
    if (std::fflush(stdout) != 0)
        GiveUp();
    Leave(EXIT_SUCCESS);  // whatever is left is not worth the time of giving it back
}
