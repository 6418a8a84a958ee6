#pragma once

#include <QString>
#include "plots/Good.h"
#include "app/Sideways.h"
