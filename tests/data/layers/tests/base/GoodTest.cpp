#include "support/Helper.h"
#include "base/Good.h"
#include "model/Upward.h"
