#pragma once

#include "own/Mine.h"
#include "base/Good.h"
