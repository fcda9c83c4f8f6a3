// Files that a formula or a bench may name.
#pragma once

namespace fuzz {

/// Writes dump.vcd, dump.fst, dump.ghw, dump.zyn, table.txt and table.mat into the current folder, at the first call.
void PutWaveforms();

}  // namespace fuzz
