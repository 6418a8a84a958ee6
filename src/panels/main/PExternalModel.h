#pragma once

#include <QElapsedTimer>
#include <QPixmap>
#include <array>
#include <cstdint>

#include "toolkit/Panel.h"

namespace tarvex {

// Shows that a model is running of which only its end will be known: seven pictures through which an animation moves.
class PExternalModel : public Panel {
 public:
  PExternalModel(const Display& display, const QString& title, const QString& modelName, const QString& fileName,
                 QWidget* parent);

  std::int32_t continueRun = 1;  // 0 once the user has asked for the stop

  // One frame further.
  void step();

 protected:
  bool closing() override;

 private:
  static constexpr int kFrames = 14;
  static constexpr int kIcons = 7;
  void stop();

  std::array<QPixmap, kFrames> frames_;
  int counter_ = 0;
  QElapsedTimer since_;
};

}  // namespace tarvex
