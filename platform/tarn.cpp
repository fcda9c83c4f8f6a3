#include "platform/tarn.h"

#include "platform/fst/fstreader.h"

NTARN::IDatabaseReader *NTARN::IDatabaseReader::create(const char *file, bool)
try {
    if (file == nullptr)
        throw XFileDoesNotExist();
    return new CFstReader(file);
} catch (const XFstDamage &) {
    throw XFileCorrupted();
} catch (const XFstNoRoom &) {
    return nullptr;
}
