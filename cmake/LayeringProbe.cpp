// Built by the Layering test only: a file of the logs module that reaches for a header of the
// scoring module, above it. The build must refuse it.
#include "scoring/Grading.h"
