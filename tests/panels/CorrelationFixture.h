#pragma once

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTabWidget>
#include <map>

#include "panels/PrepFixture.h"
#include "panels/prep/PCorrelation.h"

namespace tarvex::test {

// The panel of correlations.
class CorrelationPanelTest : public PrepTest {
 protected:
  void open(std::shared_ptr<const FactorList> list, bool demo = false) {
    panel_.reset();
    list_ = std::move(list);
    panel_ = std::make_unique<PCorrelation>(display_, *list_, demo, nullptr);
    ASSERT_EQ(panel_->problems(), QStringList());
    panel_->window()->show();
    panel_->window()->activateWindow();
    QCoreApplication::processEvents();
  }
  TableView& matrix() { return *panel_->gadget<TableView>("MaCorrelations"); }
  Tree& tree() { return *panel_->gadget<Tree>("TrCorrelation"); }
  Tree& list() { return *panel_->gadget<Tree>("SlFactors"); }
  std::string label(const char* name) { return PrepTest::label(*panel_, name); }
  void method(int mode) {
    panel_->gadget<QComboBox>("SeCorrType")->setCurrentIndex(mode);
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
    std::string text;
    for (int row = 0; row < panel_->draft().order(); ++row)
      for (int column = row + 1; column < panel_->draft().order(); ++column)
        if (const float value = panel_->draft().at(row, column); value != 0.0F) {
          EXPECT_EQ(value, panel_->draft().at(column, row));
          text +=
              std::to_string(row) + std::to_string(column) + '=' + QString::number(value, 'g', 6).toStdString() + ' ';
        }
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
    panel_->gadget<QTabWidget>("NoCorrelation")->setCurrentIndex(0);
    QCoreApplication::processEvents();
    from.setCurrent(id);
    const std::unique_ptr<QMimeData> data(from.model()->mimeData({from.currentIndex()}));
    QPoint place(100, to.viewport()->height() - 4);
    if (on >= 0) to.setCurrent(on);
    if (on >= 0) place = to.visualItemRect(to.currentItem()).center();
    QDragEnterEvent enter(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to.viewport(), &enter);
    QDragMoveEvent move(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to.viewport(), &move);
    held_ = label("MlMessage");
    if (!move.isAccepted()) return {"not accepted"};
    if (value != nullptr) answerValue(value);
    QDropEvent drop(place, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to.viewport(), &drop);
    QCoreApplication::processEvents();
    return takeShown();
  }
  // The list with the panel's correlations.
  void takeInto(FactorList& result) {
    std::string problem;
    ASSERT_TRUE(result.copyFrom(*list_, problem) && panel_->draft().applyTo(result, problem)) << problem;
  }
  // What is shown by ok, and whether the panel was left with acceptance.
  std::pair<Texts, bool> ok() {
    click(*panel_->window(), "BOk");
    return {takeShown(), !panel_->isVisible() && panel_->accepted()};
  }

  std::shared_ptr<const FactorList> list_;
  std::unique_ptr<PCorrelation> panel_;
  std::string held_;
};

}  // namespace tarvex::test
