#pragma once

#include <QString>

namespace tarvex {

// Seconds as "0:07", "12:30" or "3:05:00".
QString durationText(double seconds);

}  // namespace tarvex
