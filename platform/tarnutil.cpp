#include "platform/tarnutil.h"

#include <stdexcept>

void NTARN::NImport::KImport_VCD::vcdImport()
{
    throw std::runtime_error("cannot open " + m_fileName);
}
