#include "panels/parts/PParts.h"

#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>

#include "base/Paths.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// In the order of the selector.
constexpr FailurePolicy kPolicies[] = {FailurePolicy::Stop, FailurePolicy::Retry, FailurePolicy::Missing};

}  // namespace

PParts::PParts(const Display& display, const PartsRequest& request, std::string clusterDirectory, Start start,
               QWidget* parent)
    : Panel(display, "PParts", "PParts", "Run in parts", parent),
      request_(request),
      clusterDirectory_(std::move(clusterDirectory)),
      start_(std::move(start)) {
  const PartSettings& settings = request.settings;
  gadget<QComboBox>("OEngine")->addItems({"This machine", "A Slurm cluster"});
  gadget<QComboBox>("OEngine")->setCurrentIndex(settings.engine == EngineKind::Slurm ? 1 : 0);
  gadget<QComboBox>("OFailure")
      ->addItems({"The run stops; what is done is kept", "It is repeated; the others go on, the run fails at its end",
                  "It is repeated; then its runs count as missing"});
  for (int i = 0; i < 3; ++i)
    if (kPolicies[i] == settings.policy) gadget<QComboBox>("OFailure")->setCurrentIndex(i);
  gadget<QSpinBox>("NParts")->setValue(request.parts);
  gadget<QSpinBox>("NJobs")->setValue(settings.jobs);
  gadget<QSpinBox>("NRepeats")->setValue(settings.repeats);
  gadget<QSpinBox>("NLimit")->setValue(settings.timeLimit);
  gadget<QSpinBox>("NMemory")->setValue(settings.memory);
  QStringList links;
  for (const std::string& link : settings.links) links << QString::fromStdString(link);
  gadget<QPlainTextEdit>("TeLinks")->setPlainText(links.join('\n'));
  gadget<QLineEdit>("TDirectory")->setText(QString::fromStdString(request.directory));
  registerCallbacks({{"switchEngine", [this] { switchEngine(); }},
                     {"edited", [this] { refresh(); }},
                     {"start", [this] { this->start(); }},
                     {"cancel", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  refresh();
  gadget<QWidget>("NParts")->setFocus();
}

PartsRequest PParts::asked() {
  PartsRequest request;
  PartSettings& settings = request.settings;
  settings.engine = gadget<QComboBox>("OEngine")->currentIndex() == 1 ? EngineKind::Slurm : EngineKind::Local;
  settings.policy = kPolicies[std::max(gadget<QComboBox>("OFailure")->currentIndex(), 0)];
  settings.repeats = settings.policy == FailurePolicy::Stop ? 0 : gadget<QSpinBox>("NRepeats")->value();
  settings.jobs = gadget<QSpinBox>("NJobs")->value();
  settings.timeLimit = gadget<QSpinBox>("NLimit")->value();
  settings.memory = gadget<QSpinBox>("NMemory")->value();
  for (const QString& line : gadget<QPlainTextEdit>("TeLinks")->toPlainText().split('\n'))
    if (!line.trimmed().isEmpty()) settings.links.push_back(line.trimmed().toStdString());
  request.parts = gadget<QSpinBox>("NParts")->value();
  const std::string directory = gadget<QLineEdit>("TDirectory")->text().trimmed().toStdString();
  request.directory = directory.empty() ? std::string() : absolutePath(directory);
  return request;
}

void PParts::start() {
  PartsRequest request = asked();
  std::string message;
  if (start_(request, message)) {
    request_ = std::move(request);
    return end(true);
  }
  if (!message.empty())
    Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), window());
}

// A directory of the user's own stays.
void PParts::switchEngine() {
  auto* const field = gadget<QLineEdit>("TDirectory");
  const QString here = QString::fromStdString(request_.directory);
  const QString there = QString::fromStdString(clusterDirectory_);
  const bool isCluster = gadget<QComboBox>("OEngine")->currentIndex() == 1;
  if (field->text() == (isCluster ? here : there)) field->setText(isCluster ? there : here);
  refresh();
}

void PParts::refresh() {
  const bool stops = gadget<QComboBox>("OFailure")->currentIndex() == 0;
  const bool isCluster = gadget<QComboBox>("OEngine")->currentIndex() == 1;
  gadget<QSpinBox>("NJobs")->setSpecialValueText(isCluster ? "all that the cluster gives" : "one a core");
  const bool nowhere = gadget<QLineEdit>("TDirectory")->text().trimmed().isEmpty();
  allow(*gadget<QWidget>("NRepeats"), stops ? QString("The run stops at once.") : QString());
  allow(*gadget<QWidget>("BStart"), nowhere ? QString("The run needs a directory.") : QString());
  gadget<QLabel>("MlMessage")
      ->setText(nowhere     ? "Give the directory in which the run is to lie."
                : isCluster ? "The directory must be one that all nodes see. Your site's settings are in "
                              "~/.config/tarvex/cluster."
                            : "The run is driven by a program of its own: it goes on when this one ends.");
}

}  // namespace tarvex
