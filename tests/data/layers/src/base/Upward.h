#pragma once

#include <string>

#include "base/Good.h"
#include "factors/Upward.h"
