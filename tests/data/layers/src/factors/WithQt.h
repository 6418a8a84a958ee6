#pragma once

#include <QtWidgets/QWidget>
#include "base/Good.h"
