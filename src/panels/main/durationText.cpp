#include "panels/main/durationText.h"

namespace tarvex {

QString durationText(double seconds) {
  constexpr qint64 kMinute = 60;
  constexpr qint64 kHour = 3600;
  const auto whole = static_cast<qint64>(seconds);
  const QString rest = QString("%1").arg(whole % kMinute, 2, 10, QChar('0'));
  if (whole < kHour) return QString("%1:%2").arg(whole / kMinute).arg(rest);
  return QString("%1:%2:%3").arg(whole / kHour).arg(whole % kHour / kMinute, 2, 10, QChar('0')).arg(rest);
}

}  // namespace tarvex
