#pragma once

#include <memory>

#include "toolkit/Panel.h"

namespace tarvex {

// A hint or the description of a case: a heading over a picture and a text. F1 leads on to a whole page.
class PHelp : public Panel {
 public:
  // `bitmap` is looked up on the display's path, the text is what belongs to it (hintText); either may be missing, and
  // then leaves no gap. `topic` is the page that tells more.
  PHelp(const Display& display, const QString& title, const QString& heading, const QString& bitmap,
        const QString& topic, QWidget* parent);

  // The practitioner's hint that the panel of that file has; null for a panel without one.
  static std::unique_ptr<PHelp> hintOf(const Display& display, const QString& panel, QWidget* parent);
  // The names of the panels that have one.
  static QStringList panelsWithHint();
  // A text of lines in letters of one width, and no picture.
  static std::unique_ptr<PHelp> ofLines(const Display& display, const QString& title, const QString& heading,
                                        const QString& lines, const QString& topic, QWidget* parent);

  QString helpTopic() const override { return topic_; }

 private:
  QString topic_;
};

}  // namespace tarvex
