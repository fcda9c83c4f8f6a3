#include "platform/tarn.h"

#include <string>
#include <system_error>

#include "platform/files/regularfile.h"
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
} catch (const tesk::XByteFault &fault) {
    throw XFileUnreadable(fault.error);
} catch (const XFstTooMuch &fault) {
    const std::string text =
        std::string("Waveform file `") + file + "' claims more " + fault.what + " than a file of its size can hold.";
    Q71log_PrintFormattedString(2, "KERNEL", "", text.c_str());
    throw XFileCorrupted();
} catch (const tesk::XByteDamage &) {
    throw XFileCorrupted();
} catch (const XFstNoRoom &fault) {
    const std::string text = std::string("Waveform file `") + file + "' cannot be unpacked into a temporary file: " +
                             std::generic_category().message(fault.error) + ".";
    Q71log_PrintFormattedString(1, "KERNEL", "", text.c_str());
    return nullptr;
}
