#include "panels/sampling/makeMethodPanel.h"

#include "factors/FactorList.h"
#include "panels/main/PanelWork.h"
#include "panels/sampling/PFast.h"
#include "panels/sampling/PFixed.h"
#include "panels/sampling/PRepLatin.h"
#include "panels/sampling/PSobol.h"
#include "sampling/FixedSampler.h"
#include "sampling/centralRun.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

// Runs that were typed are shown whether or not the list has a run in its middle.
std::unique_ptr<PMethod> makeFixed(const Display& display, const MethodContext& context, QWidget* parent) {
  std::vector<double> usual;
  std::string message;
  const auto* const fixed = dynamic_cast<const FixedSampler*>(context.current);
  bool found = false;
  {
    const PanelWork work(display, "Looking for the middle of the factors", parent);
    found = centralRun(*context.factors, usual, message, work.progress());
    if (work.stopped()) return nullptr;
  }
  if (!found) {
    const bool hasRuns =
        fixed != nullptr && fixed->values().rows() > 0 && fixed->values().columns() == context.factors->factorCount();
    if (!hasRuns) {
      Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), parent);
      return nullptr;
    }
    usual = fixed->copyRow(0);
  }
  return std::make_unique<PFixed>(display, context, usual, parent);
}

}  // namespace

std::unique_ptr<PMethod> makeMethodPanel(const Display& display, std::int32_t method, const MethodContext& context,
                                         QWidget* parent) {
  switch (method) {
    case kFast:
      return std::make_unique<PFast>(display, context, parent);
    case kFixed:
      return makeFixed(display, context, parent);
    case kRepLatin:
      return std::make_unique<PRepLatin>(display, context, parent);
    case kSobol:
      return std::make_unique<PSobol>(display, context, parent);
    default:
      return std::make_unique<PMethod>(display, methodKind(method), context, parent);
  }
}

}  // namespace tarvex
