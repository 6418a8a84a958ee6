#include "toolkit/chartAccess.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "plots/Figure.h"
#include "toolkit/ChartView.h"
#include "toolkit/chartText.h"

namespace tarvex {
namespace {

class ChartAccess : public QAccessibleWidget {
 public:
  explicit ChartAccess(ChartView* view) : QAccessibleWidget(view, QAccessible::Chart), view_(view) {}

  QString text(QAccessible::Text kind) const override {
    QString own = QAccessibleWidget::text(kind);
    if (!own.isEmpty()) return own;
    if (kind == QAccessible::Name)
      return view_->figure().title.empty() ? "Chart" : QString::fromStdString(view_->figure().title);
    return kind == QAccessible::Description ? figureText(view_->figure()) : QString();
  }

 private:
  ChartView* view_;
};

QAccessibleInterface* makeAccess(const QString&, QObject* object) {
  auto* const view = qobject_cast<ChartView*>(object);
  return view != nullptr ? new ChartAccess(view) : nullptr;
}

}  // namespace

void installChartAccess() {
  [[maybe_unused]] static const bool installed = (QAccessible::installFactory(makeAccess), true);
}

void announceChart(ChartView& view) {
  QAccessibleEvent event(&view, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&event);
}

}  // namespace tarvex
