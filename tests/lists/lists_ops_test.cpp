// The arrays and lists interpreter over its fuzz corpus, its regressions and
// seeded random streams.

#include "ops/lists.h"
#include "support/OpsReplay.h"

TEST(ListsOps, CorpusRegressionsAndRandomStreams) { testing_support::ReplayStreams("fuzz_lists", fuzz::lists::Run, 12, 40000); }
