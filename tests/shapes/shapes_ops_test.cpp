// The fixed array and matrix interpreter over its fuzz corpus, its regressions and seeded
// random streams.

#include "ops/shapes.h"
#include "support/OpsReplay.h"

TEST(ShapesOps, CorpusRegressionsAndRandomStreams) { testing_support::ReplayStreams("fuzz_shapes", fuzz::shapes::Run, 16, 40000); }
