#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "toolkit/Panel.h"

class QListWidget;

namespace tarvex {

class SensitivityStats;

// What a result panel shows: numbers of records and places of variables, both upwards.
struct SaComponents {
  std::vector<std::int32_t> records;
  std::vector<std::int32_t> variables;
};

// Chooses the factors and the variables that a result panel shows: a page for each. Factors without a measure aren't on
// offer; they are shown with all the others, or not at all.
class PSaRandomSelect : public Panel {
 public:
  PSaRandomSelect(const Display& display, const SensitivityStats& stats, const std::vector<std::string>& variables,
                  const SaComponents& shown, QWidget* parent);

  SaComponents components();

 private:
  struct Item {
    std::string name;
    std::int32_t number;
    bool selected;
  };
  void addPage(const QString& label, const QString& prompt, const QString& what, const std::vector<Item>& items);
  QListWidget* list(int page, const char* name);
  void move(const char* from, const char* to, bool all);
  std::vector<std::int32_t> numbers(int page);
  void refresh();

  std::vector<std::int32_t> without_;  // records that have no measure
  int offered_ = 0;                    // records that have
};

}  // namespace tarvex
