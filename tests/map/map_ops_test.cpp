// The map interpreter over its fuzz corpus, its regressions and seeded
// random streams.

#include "ops/map.h"
#include "support/OpsReplay.h"

TEST(MapOps, CorpusRegressionsAndRandomStreams) { testing_support::ReplayStreams("fuzz_map", fuzz::map::Run, 40, 40000); }
