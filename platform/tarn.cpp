#include "platform/tarn.h"

#include <string>

#include "platform/fst/fstlimits.h"
#include "platform/fst/fstreader.h"
#include "platform/ghw/ghwreader.h"
#include "platform/log.h"

NTARN::IDatabaseReader *NTARN::IDatabaseReader::create(const char *file, bool)
try {
    if (file == nullptr)
        throw XFileDoesNotExist();
    if (IsGhwFile(file))
        return new CGhwReader(file);
    return new CFstReader(file);
} catch (const XFstTooMuch &fault) {
    const std::string text =
        std::string("Waveform file `") + file + "' claims more " + fault.what + " than a file of its size can hold.";
    Q71log_PrintFormattedString(2, "KERNEL", "", text.c_str());
    throw XFileCorrupted();
} catch (const XFstDamage &) {
    throw XFileCorrupted();
} catch (const XGhwDamage &) {
    throw XFileCorrupted();
} catch (const XFstNoRoom &) {
    return nullptr;
}
