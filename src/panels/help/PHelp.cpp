#include "panels/help/PHelp.h"

#include <QFontDatabase>
#include <QKeySequence>
#include <QLabel>
#include <QPixmap>

#include "panels/help/hintText.h"
#include "toolkit/Display.h"

namespace tarvex {
namespace {

struct Hint {
  const char* panel;
  const char* bitmap;
  const char* title;    // behind "Help - "
  const char* heading;  // behind "Pratictioner's Hint. "
  const char* topic;
};

// Kept: the Latin hypercube shows the picture of the random method, and the heading has the system's spelling.
// clang-format off
constexpr Hint kHints[] = {
    {"PFast",       "fast",       "Fast",                       "Fast",               "fast"},
    {"PFixed",      "fixed",      "Fixed Samples",              "Fixed Samples",      "fixed"},
    {"PLatin",      "random",     "Latin HyperCube",            "Latin HyperCube",    "latin"},
    {"PLpTau",      "lptau",      "QuasiRandom LpTau",          "QuasiRandom LpTau",  "lptau"},
    {"PMorris",     "morris",     "Morris",                     "Morris",             "morris"},
    {"PRandom",     "random",     "Random",                     "Random",             "random"},
    {"PRepLatin",   "repLatin",   "replicated Latin hypercube", "rep Latin",          "repLatin"},
    {"PSobol",      "sobol",      "Sobol",                      "Sobol",              "sobol"},
    {"PTruncation", "truncation", "Default Truncation",         "Default Truncation", "distributions#truncation"},
};
// clang-format on

}  // namespace

PHelp::PHelp(const Display& display, const QString& title, const QString& heading, const QString& bitmap,
             const QString& topic, QWidget* parent)
    : Panel(display, "PHelp", "Help", title, parent), topic_(topic) {
  const QPixmap picture = bitmap.isEmpty() ? QPixmap() : display.bitmap(bitmap);
  const QString text = bitmap.isEmpty() ? QString() : hintText(display, bitmap);
  gadget<QLabel>("MlTitle")->setText(heading);
  gadget<QLabel>("IcText")->setPixmap(picture);
  gadget<QLabel>("IcText")->setVisible(!picture.isNull());
  gadget<QLabel>("TText")->setText(text);
  gadget<QLabel>("TText")->setVisible(!text.isEmpty());
  registerCallbacks({{"dismiss", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  window()->adjustSize();
}

std::unique_ptr<PHelp> PHelp::hintOf(const Display& display, const QString& panel, QWidget* parent) {
  for (const Hint& hint : kHints)
    if (panel == hint.panel)
      return std::make_unique<PHelp>(display, QString("Help - ") + hint.title,
                                     QString("Pratictioner's Hint. ") + hint.heading,
                                     QString("../help/") + hint.bitmap + ".bmp", hint.topic, parent);
  return nullptr;
}

QStringList PHelp::panelsWithHint() {
  QStringList names;
  for (const Hint& hint : kHints) names << hint.panel;
  return names;
}

std::unique_ptr<PHelp> PHelp::ofLines(const Display& display, const QString& title, const QString& heading,
                                      const QString& lines, const QString& topic, QWidget* parent) {
  auto panel = std::make_unique<PHelp>(display, title, heading, QString(), topic, parent);
  auto* const text = panel->gadget<QLabel>("TText");
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(false);
  text->setText(lines);
  text->show();
  panel->window()->adjustSize();
  return panel;
}

}  // namespace tarvex
