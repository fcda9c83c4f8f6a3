/* Writes FST files with the format's own writer, fstapi: fst_writer FILE FORM. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "fstapi.h"

static fstHandle bit, same, bus, wide, real, text, twoState;

static void Declare(void *file)
{
    fstWriterSetTimescaleFromString(file, "100ps");
    fstWriterSetScope(file, FST_ST_VCD_MODULE, "top", "component");
    fstWriterSetComment(file, "a comment");
    bit = fstWriterCreateVar(file, FST_VT_VCD_WIRE, FST_VD_INPUT, 1, "bit", 0);
    same = fstWriterCreateVar(file, FST_VT_VCD_WIRE, FST_VD_IMPLICIT, 1, "same", 0);
    bus = fstWriterCreateVar(file, FST_VT_VCD_REG, FST_VD_IMPLICIT, 12, "bus [11:0]", 0);
    fstWriterSetScope(file, FST_ST_VHDL_RECORD, "inner", "");
    wide = fstWriterCreateVar2(file, FST_VT_SV_LOGIC, FST_VD_IMPLICIT, 70, "wide", 0, "type", FST_SVT_VHDL_SIGNAL,
                               FST_SDT_VHDL_STD_LOGIC);
    real = fstWriterCreateVar(file, FST_VT_VCD_REAL, FST_VD_IMPLICIT, 8, "real", 0);
    fstWriterSetUpscope(file);
    text = fstWriterCreateVar(file, FST_VT_GEN_STRING, FST_VD_IMPLICIT, 0, "text", 0);
    fstWriterCreateVar(file, FST_VT_VCD_WIRE, FST_VD_IMPLICIT, 12, "alias [0:11]", bus);
    twoState = fstWriterCreateVar(file, FST_VT_SV_INT, FST_VD_IMPLICIT, 32, "number [31:0]", 0);
    fstWriterSetUpscope(file);
}

static void Letters(char *letters, int count, const char *from, unsigned seed)
{
    const unsigned choices = (unsigned)strlen(from);
    for (int i = 0; i < count; ++i) {
        seed = seed * 1103515245u + 12345u;
        letters[i] = from[(seed >> 16) % choices];
    }
}

static void Change(void *file, unsigned step)
{
    char letters[80];
    double number = step % 5 == 0 ? 0 : step / 8.0 - 3;
    Letters(letters, 1, "01xzhuwl-", step);
    fstWriterEmitValueChange(file, bit, letters);
    fstWriterEmitValueChange(file, same, letters);
    Letters(letters, 12, step % 3 ? "01" : "01xzUWLH-", step + 7);
    fstWriterEmitValueChange(file, bus, letters);
    if (step % 2) {
        Letters(letters, 70, step % 7 ? "01" : "01xz", step + 9);
        fstWriterEmitValueChange(file, wide, letters);
    }
    if (step % 11 == 0)
        memcpy(&number, "01100111", 8);
    fstWriterEmitValueChange(file, real, &number);
    fstWriterEmitVariableLengthValueChange(file, text, "abc", step % 4);
    fstWriterEmitValueChange32(file, twoState, 32, step * 2654435761u);
}

int main(int argc, char **argv)
{
    const char *form = argc > 2 ? argv[2] : "";
    void *file = argc > 2 ? fstWriterCreate(argv[1], strstr(form, "sidecar") == NULL) : NULL;
    if (!file)
        return 1;
    fstWriterSetPackType(file, strstr(form, "zlib")     ? FST_WR_PT_ZLIB
                               : strstr(form, "fastlz") ? FST_WR_PT_FASTLZ
                                                        : FST_WR_PT_LZ4);
    fstWriterSetRepackOnClose(file, strstr(form, "whole") != NULL);
    if (strstr(form, "zero"))
        fstWriterSetTimezero(file, -50);
    Declare(file);
    if (strstr(form, "many")) /* more than 4 MiB of hierarchy is packed twice */
        for (int i = 0; i < 60000; ++i) {
            char name[100];
            sprintf(name, "a_variable_with_a_rather_long_name_so_that_the_hierarchy_is_large_enough_%d", i);
            fstWriterCreateVar(file, FST_VT_VCD_WIRE, FST_VD_IMPLICIT, 1, name, i % 3 ? bit : 0);
        }
    const unsigned steps = strstr(form, "long") ? 30000 : 60;
    if (strstr(form, "early"))
        Change(file, 3); /* in front of the first time */
    for (unsigned step = 0; step < steps; ++step) {
        fstWriterEmitTimeChange(file, (strstr(form, "late") ? 1000000000000ull : 0) + step * 10ull + step % 3);
        if (step == 0 && strstr(form, "early"))
            continue;
        Change(file, step);
        if (step % (steps / 4) == steps / 8)
            fstWriterEmitDumpActive(file, step % 2);
        if (step % (steps / 4) == steps / 5)
            fstWriterFlushContext(file);
    }
    if (strstr(form, "killed"))
        _exit(0);
    fstWriterClose(file);
    return 0;
}
