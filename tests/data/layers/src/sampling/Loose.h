#pragma once

#include "Sampler.h"
#include "support/Helper.h"
