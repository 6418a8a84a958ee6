#include "toolkit/TableSource.h"

namespace tarvex {

QString EditableTableSource::setBlock(int row, int column, const std::vector<QStringList>& block) {
  for (std::size_t i = 0; i < block.size(); ++i) {
    const int at = row + static_cast<int>(i);
    if (at >= rows() && !appendRow()) return "There is no row " + QString::number(at + 1) + '.';
    for (int field = 0; field < block[i].size(); ++field) {
      const auto place = [at] { return "row " + QString::number(at + 1) + ", "; };
      if (column + field >= columns()) return place() + "there is no column for '" + block[i][field] + '\'';
      const QString why = isEditable(at, column + field) ? setText(at, column + field, block[i][field].trimmed())
                                                         : QString("it can't be changed");
      if (!why.isEmpty()) return place() + header(column + field) + ": " + why;
    }
  }
  return {};
}

}  // namespace tarvex
