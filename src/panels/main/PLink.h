#pragma once

#include <memory>
#include <string>
#include <vector>

#include "panels/main/LinkTable.h"
#include "toolkit/Panel.h"

namespace tarvex {

// Puts names into the order of others that stay: row by row, by buttons, by drag, or all that are equal at once.
class PLink : public Panel {
 public:
  const std::vector<std::string>& names() const { return names_; }

 protected:
  struct Words {
    const char* panel;  // its name and that of its file
    const char* title;
    LinkTable::Words table;
    const char* noneSelected;
    const char* apart;  // before the names that stand beside another one than their own
  };

  // `shown` stands beside the names; `keys` are what equal names are equal to.
  // Requires: as many of each.
  PLink(const Display& display, const Words& words, std::vector<std::string> shown, std::vector<std::string> keys,
        std::vector<std::string> names, QWidget* parent);

  // A name of row `from` now stands in row `to`, and those between them one row nearer to `from`.
  virtual void moved(int /*from*/, int /*to*/) {}

 private:
  void move(int from, int to);
  void moveSelected(int by);
  void pairNames();
  void showRows(int selected);
  int selectedRow();

  Words words_;
  std::vector<std::string> shown_;
  std::vector<std::string> keys_;
  std::vector<std::string> names_;
  std::shared_ptr<LinkTable> table_;
};

}  // namespace tarvex
