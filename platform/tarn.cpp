#include "platform/tarn.h"

NTARN::IDatabaseReader *NTARN::IDatabaseReader::create(const char *, bool)
{
    throw XFileDoesNotExist();
}
