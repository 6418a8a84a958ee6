#include "panels/vels/RunSheet.h"

#include "base/NumberText.h"

namespace tarvex {

QString RunSheet::text(int row, int column) const {
  constexpr int kDigits = 10;  // as a sample file has them
  return QString::fromStdString(numberText(number(row, column), kDigits));
}

}  // namespace tarvex
