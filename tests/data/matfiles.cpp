// Writes matio73.mat, of version 7.3: g++ -std=c++20 matfiles.cpp -lmatio && ./a.out [ROWS], with a row count a large file.
#include <matio.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

matvar_t *Make(const char *name, matio_classes classId, matio_types type, std::vector<std::size_t> sizes,
               const void *data, int options = 0)
{
    return Mat_VarCreate(name, classId, type, static_cast<int>(sizes.size()), sizes.data(), const_cast<void *>(data),
                         options);
}

matvar_t *MakeDoubles(const char *name, std::vector<std::size_t> sizes, const std::vector<double> &values)
{
    return Make(name, MAT_C_DOUBLE, MAT_T_DOUBLE, std::move(sizes), values.data());
}

matvar_t *MakeStructure(const char *name, std::vector<std::size_t> sizes, std::vector<const char *> fields)
{
    return Mat_VarCreateStruct(name, static_cast<int>(sizes.size()), sizes.data(), fields.data(),
                               static_cast<unsigned>(fields.size()));
}

void Write(mat_t *file, matvar_t *variable)
{
    if (Mat_VarWrite(file, variable, MAT_COMPRESSION_NONE) != 0)
        std::exit(1);
    Mat_VarFree(variable);
}

const std::vector<double> Matrix = {10, 20, 30, 1, 4, 7, 2, 5, 8, 3, 6, 9};

void WriteNumbers(mat_t *file)
{
    Write(file, MakeDoubles("m", {3, 4}, Matrix));
    Write(file, MakeDoubles("times", {1, 3}, {1, 2, 4}));
    Write(file, MakeDoubles("values", {3, 1}, {5, -3, 300}));
    Write(file, MakeDoubles("odd", {5, 1}, {0, NAN, INFINITY, -INFINITY, 1.25}));
    Write(file, MakeDoubles("n3", {2, 2, 2}, {1, 2, 3, 4, 5, 6, 7, 8}));
    Write(file, MakeDoubles("e", {0, 3}, {}));
    double re[] = {1, 3}, im[] = {2, -4};
    mat_complex_split_t complex = {re, im};
    Write(file, Make("cx", MAT_C_DOUBLE, MAT_T_DOUBLE, {2, 1}, &complex, MAT_F_COMPLEX));
    const std::int8_t bytes[] = {1, 2};
    Write(file, Make("i8", MAT_C_INT8, MAT_T_INT8, {1, 2}, bytes));
    const std::uint64_t number = 3;
    Write(file, Make("u64", MAT_C_UINT64, MAT_T_UINT64, {1, 1}, &number));
    const float single = 1.5F;
    Write(file, Make("sg", MAT_C_SINGLE, MAT_T_SINGLE, {1, 1}, &single));
    Write(file, Make("txt", MAT_C_CHAR, MAT_T_UTF8, {1, 4}, "text"));
    const std::uint8_t truths[] = {1, 0};
    Write(file, Make("lg", MAT_C_UINT8, MAT_T_UINT8, {1, 2}, truths, MAT_F_LOGICAL));
}

void WriteStructures(mat_t *file)
{
    matvar_t *inner = MakeStructure(nullptr, {1, 1}, {"v"});
    Mat_VarSetStructFieldByIndex(inner, 0, 0, MakeDoubles(nullptr, {1, 1}, {7}));
    matvar_t *outer = MakeStructure("s", {1, 1}, {"f", "t"});
    Mat_VarSetStructFieldByIndex(outer, 0, 0, MakeDoubles(nullptr, {3, 4}, Matrix));
    Mat_VarSetStructFieldByIndex(outer, 1, 0, inner);
    Write(file, outer);
    matvar_t *elements = MakeStructure("sa", {2, 2}, {"v"});
    const double values[] = {11, 21, 12, 22};
    for (std::size_t i = 0; i < 4; ++i)
        Mat_VarSetStructFieldByIndex(elements, 0, i, MakeDoubles(nullptr, {1, 1}, {values[i]}));
    Write(file, elements);
    matvar_t *cells[] = {MakeDoubles(nullptr, {1, 1}, {1}), nullptr};
    cells[1] = MakeDoubles(nullptr, {1, 1}, {2});
    Write(file, Make("ce", MAT_C_CELL, MAT_T_CELL, {1, 2}, cells));
}

}  // namespace

int main(int count, char **arguments)
{
    mat_t *file = Mat_CreateVer("matio73.mat", nullptr, MAT_FT_MAT73);
    if (file == nullptr)
        return 1;
    if (count > 1) {
        const std::size_t rows = std::strtoull(arguments[1], nullptr, 10);
        Write(file, MakeDoubles("large", {rows, 1}, std::vector<double>(rows, 1)));
    } else {
        WriteNumbers(file);
        WriteStructures(file);
    }
    return Mat_Close(file);
}
