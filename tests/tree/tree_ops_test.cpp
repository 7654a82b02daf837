// The tree interpreter over its fuzz corpus, its regressions and seeded
// random streams.

#include "ops/tree.h"
#include "support/OpsReplay.h"

TEST(TreeOps, CorpusRegressionsAndRandomStreams) { testing_support::ReplayStreams("fuzz_tree", fuzz::tree::Run, 30, 40000); }
