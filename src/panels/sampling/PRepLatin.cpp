#include "panels/sampling/PRepLatin.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <algorithm>
#include <cmath>
#include <limits>

#include "factors/FactorList.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {

// The stochastic factors, each with whether it is chosen.
class PRepLatin::Elements : public TableSource {
 public:
  Elements(const FactorList& factors, const RepLatinSampler* current) {
    if (current != nullptr) design_ = *current;
    design_.synchronise(factors);
    for (std::int32_t i = 0; i < factors.factorCount(); ++i)
      if (design_.elementFlag(i) >= 0) shown_.push_back(i);
  }
  void flip(int row) {
    const std::int32_t i = shown_[static_cast<std::size_t>(row)];
    static_cast<void>(design_.setElementFlag(i, isChosen(row) ? 0 : 1));  // in range
  }
  std::vector<std::string> chosen() const {
    std::vector<std::string> names;
    for (int row = 0; row < rows(); ++row)
      if (isChosen(row)) names.push_back(nameOf(row));
    return names;
  }
  int rows() const override { return static_cast<int>(shown_.size()); }
  int columns() const override { return 2; }
  QString header(int column) const override { return column == 0 ? "Factor" : "Chosen"; }
  bool isNumeric(int /*column*/) const override { return false; }
  QString text(int row, int column) const override {
    return column == 0 ? QString::fromStdString(nameOf(row)) : QString(isChosen(row) ? "yes" : "no");
  }
  double number(int /*row*/, int /*column*/) const override { return std::numeric_limits<double>::quiet_NaN(); }

 private:
  bool isChosen(int row) const { return design_.elementFlag(shown_[static_cast<std::size_t>(row)]) > 0; }
  const std::string& nameOf(int row) const { return *design_.elementName(shown_[static_cast<std::size_t>(row)]); }

  RepLatinSampler design_;
  std::vector<std::int32_t> shown_;
};

PRepLatin::PRepLatin(const Display& display, const MethodContext& context, QWidget* parent)
    : PMethod(display, methodKind(kRepLatin), context, parent, Member()),
      elements_(std::make_shared<Elements>(factors(), dynamic_cast<const RepLatinSampler*>(context.current))),
      replications_(QString::number(opened().replications.value_or(1))) {
  auto* const table = gadget<TableView>("MaElements");
  table->setSource(elements_);
  table->horizontalHeader()->setStretchLastSection(true);
  auto* const space = new QShortcut(QKeySequence(Qt::Key_Space), table);
  space->setContext(Qt::WidgetShortcut);
  connect(space, &QShortcut::activated, this, [this] { clickMatrix(); });
  gadget<QCheckBox>("SCChoice")->setChecked(opened().choice != 0);
  if (factors().correlationMode == kSteinSample) {
    const auto root = static_cast<std::int32_t>(std::sqrt(static_cast<double>(mostRuns())));
    gadget<QLabel>("labSamSize")->setText(QString("Sample si&ze (max %1)").arg(mostRuns()));
    if (root > 1)
      gadget<QLabel>("labNumRep")->setText(QString("N° of &replications (max value suggested %1)").arg(root));
  }
  start({{"changeSampling", [this] { changeSampling(); }},
         {"changeSize", [this] { edited(); }},
         {"clickMatrix", [this] { clickMatrix(); }}});
}

std::int64_t PRepLatin::mostRuns() const {
  return factors().correlationMode == kSteinSample ? factors().steinInfo.rows()
                                                   : std::numeric_limits<std::int32_t>::max();
}

SamplerSettings PRepLatin::read(Refusal& refusal) {
  SamplerSettings settings = PMethod::read(refusal);
  settings.chosen = elements_->chosen();
  if (gadget<QCheckBox>("SCChoice")->isChecked()) settings.choice = opened().choice != 0 ? opened().choice : 1;
  const std::int64_t runs = designSize(settings, factors().correlatableCount());
  if (runs > mostRuns() && refusal.text.isEmpty())
    refusal = {QString(kind().numbers.front().refused) +
                   QString("\nThe sample size would be %1; at most %2 is possible.").arg(runs).arg(mostRuns()),
               gadget<QLineEdit>("NBaseDesign")};
  return settings;
}

void PRepLatin::showState(const SamplerSettings& settings) {
  const std::int64_t runs = designSize(settings, factors().correlatableCount());
  gadget<QLineEdit>("NSampleSize")->setText(runs > 0 ? QString::number(runs) : QString());
  const bool choosing = settings.choice != 0;
  allow(*gadget<QLineEdit>("NReplications"), choosing ? "With chosen factors there is one replication." : QString());
  allow(*gadget<TableView>("MaElements"), choosing ? QString() : "No factors are to be chosen.");
}

// One replication while factors are chosen, then as many as there were.
void PRepLatin::changeSampling() {
  auto* const field = gadget<QLineEdit>("NReplications");
  const bool choosing = gadget<QCheckBox>("SCChoice")->isChecked();
  if (choosing) replications_ = field->text();
  field->setText(choosing ? QString("1") : replications_);
  edited();
}

void PRepLatin::clickMatrix() {
  auto* const table = gadget<TableView>("MaElements");
  const QModelIndex at = table->currentIndex();
  if (!at.isValid() || !table->isEnabled()) return;
  elements_->flip(table->tableModel().sourceRow(at.row()));
  table->viewport()->update();
  edited();
}

}  // namespace tarvex
