#pragma once

#include "base/sampValues.h"

namespace tarvex {

// One column per analysed variable, rows in the run order of the sampling design.
using OutputTable = sampValues;

}  // namespace tarvex
