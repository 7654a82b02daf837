// The table interpreter over its fuzz corpus, its regressions and seeded
// random streams.

#include "ops/tables.h"
#include "support/OpsReplay.h"

TEST(TablesOps, CorpusRegressionsAndRandomStreams) { testing_support::ReplayStreams("fuzz_tables", fuzz::tables::Run, 16, 20000); }
