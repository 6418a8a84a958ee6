#pragma once

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTabWidget>
#include <map>

#include "panels/PrepFixture.h"
#include "panels/prep/PCorrelation.h"

namespace tarvex::test {

// The panel of correlations.
class CorrelationPanelTest : public PrepPanelTest<PCorrelation> {
 protected:
  void open(std::shared_ptr<const FactorList> list, bool demo = false) {
    panel_.reset();
    list_ = std::move(list);
    show(std::make_unique<PCorrelation>(display_, *list_, demo, nullptr));
    window().activateWindow();
    QCoreApplication::processEvents();
  }
  TableView& matrix() { return table("MaCorrelations"); }
  Tree& tree() { return in<Tree>("TrCorrelation"); }
  Tree& list() { return in<Tree>("SlFactors"); }
  void page(int number) { in<QTabWidget>("NoCorrelation").setCurrentIndex(number); }
  void method(int mode) {
    in<QComboBox>("SeCorrType").setCurrentIndex(mode);
    panel_->call("changeCorrType");
  }
  // What is shown when a cell gets the text.
  Texts cell(int row, int column, const char* text) {
    matrix().model()->setData(matrix().model()->index(row, column), text);
    QCoreApplication::processEvents();
    return takeShown();
  }
  // The pairs of the matrix that are correlated.
  std::string numbers() {
    const CorrelationDraft& draft = panel_->draft();
    std::string text;
    for (int row = 0; row < draft.order(); ++row)
      for (int column = row + 1; column < draft.order(); ++column)
        if (const float value = draft.at(row, column); value != 0.0F)
          text += QString("%1%2=%3 ").arg(row).arg(column).arg(value).toStdString();
    return text;
  }
  // "0.00   x1 > 0.50   x2 | x3": each item of the tree behind its depth, and what is outside.
  std::string shownTree() {
    std::map<int, int> depths;
    std::string text;
    for (const TreeItem& item : tree().items()) {
      const int depth = depths[item.id] = item.parent == kNoParent ? 0 : depths[item.parent] + 1;
      text += std::string(static_cast<std::size_t>(depth), '>') + item.text.toStdString() + ' ';
    }
    text += "|";
    for (const TreeItem& item : list().items()) text += ' ' + item.text.toStdString();
    return text;
  }
  // What is shown when an item is dragged there; -1 is beside all items. `value` is typed where one is asked for.
  Texts drag(Tree& from, int id, Tree& to, int on, const char* value = nullptr) {
    page(0);
    QCoreApplication::processEvents();
    from.setCurrent(id);
    const std::unique_ptr<QMimeData> data(from.model()->mimeData({from.currentIndex()}));
    QPoint place(100, to.viewport()->height() - 4);
    if (on >= 0) to.setCurrent(on);
    if (on >= 0) place = to.visualItemRect(to.currentItem()).center();
    const auto send = [&](auto&& event) {
      QCoreApplication::sendEvent(to.viewport(), &event);
      return event.isAccepted();
    };
    send(QDragEnterEvent(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier));
    const bool accepted = send(QDragMoveEvent(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier));
    held_ = message();
    if (!accepted) return {"not accepted"};
    if (value != nullptr) answerValue(value);
    send(QDropEvent(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier));
    QCoreApplication::processEvents();
    return takeShown();
  }
  // The list with the panel's correlations.
  FactorList taken() {
    FactorList result;
    std::string problem;
    EXPECT_TRUE(result.copyFrom(*list_, problem) && panel_->draft().applyTo(result, problem)) << problem;
    return result;
  }
  // Whether ok left the panel with acceptance, after it had shown these.
  bool ok(const Texts& expected = {}) {
    click(window(), "BOk");
    expectShown(takeShown(), expected);
    return !panel_->isVisible() && panel_->accepted();
  }

  std::shared_ptr<const FactorList> list_;
  std::string held_;
};

}  // namespace tarvex::test
