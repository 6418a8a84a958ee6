#include "panels/sampling/PMethod.h"

#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <charconv>

#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "panels/help/PHelp.h"
#include "sampling/SobolSampler.h"
#include "sampling/designFacts.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr int kMostLines = 3;  // that the message line has room for

QString seedRefusal() {
  const std::unique_ptr<Sampler> sampler = makeSampler(kRandom);
  return sampler->setSeed(0) ? QString() : QString::fromStdString(sampler->errorText);
}

SamplerSettings settingsOfContext(const MethodKind& kind, const MethodContext& context) {
  if (context.current == nullptr) return settingsFrom(*makeSampler(kind.method));
  SamplerSettings settings = settingsFrom(*context.current);
  if (const auto* const sobol = dynamic_cast<const SobolSampler*>(context.current))
    settings.cheap = sobol->isCheap(context.factors->correlatableCount());
  return settings;
}

std::string textOf(const Sampler& sampler) {
  TextWriter out;
  sampler.writeSection(out);
  return out.text();
}

}  // namespace

PMethod::PMethod(const Display& display, const MethodKind& kind, const MethodContext& context, QWidget* parent,
                 Member /*isMember*/)
    : Panel(display, kind.file, kind.name, kind.title, parent),
      kind_(kind),
      context_(context),
      opened_(settingsOfContext(kind, context)) {}

PMethod::PMethod(const Display& display, const MethodKind& kind, const MethodContext& context, QWidget* parent)
    : PMethod(display, kind, context, parent, Member()) {
  if (kind.method == kLatin && factors().correlationMode == kSteinSample) {
    setTitle(QString(kind.title) + " with Stein");
    gadget<QLabel>("labNumExe")->setText(QString("&N° of executions (max %1)").arg(factors().steinInfo.rows()));
  }
  start({});
}

PMethod::~PMethod() = default;

std::unique_ptr<Sampler> PMethod::takeSampler() {
  return std::move(sampler_);
}

void PMethod::start(std::vector<PanelCallback> table) {
  table.insert(table.end(), {{"cancel", [this] { end(false); }},
                             {"ok", [this] { ok(); }},
                             {"help", [this] { help(); }},
                             {"edited", [this] { edited(); }}});
  showSettings();
  edited();
  if (isDemo()) setReadOnly();
  registerCallbacks(std::move(table));
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  const char* const first = !kind_.lists.empty()     ? kind_.lists.front().gadget
                            : !kind_.numbers.empty() ? kind_.numbers.front().gadget
                                                     : "BOk";
  gadget<QWidget>(first)->setFocus();
  if (auto* const field = window()->findChild<QLineEdit*>(first)) field->selectAll();
}

void PMethod::showSettings() {
  for (const NumberSetting& number : kind_.numbers)
    gadget<QLineEdit>(number.gadget)->setText(QString::number((opened_.*number.number).value_or(0)));
  for (const ListSetting& list : kind_.lists) fillList(list, opened_, (opened_.*list.number).value_or(0));
}

// A number that isn't listed is kept, as the last entry.
void PMethod::fillList(const ListSetting& list, const SamplerSettings& settings, std::int64_t value) {
  auto* const box = gadget<QComboBox>(list.gadget);
  std::vector<std::int64_t> values = list.values;
  const bool isListed = value < 1 || std::ranges::find(values, value) != values.end();
  if (!isListed) values.push_back(value);
  box->clear();
  SamplerSettings design = settings;
  for (const std::int64_t entry : values) {
    design.*list.number = entry;
    box->addItem(QString::number(list.showsRuns ? designSize(design, factors().correlatableCount()) : entry),
                 QVariant::fromValue<qlonglong>(entry));
  }
  int index = isListed || list.atFirst == ListSetting::Unlisted::Itself
                  ? box->findData(QVariant::fromValue<qlonglong>(value))
                  : 0;
  if (!isListed && list.atFirst == ListSetting::Unlisted::NextBelow)
    index = static_cast<int>(std::ranges::upper_bound(list.values, value) - list.values.begin()) - 1;
  box->setCurrentIndex(std::max(index, 0));
  if (box->currentData().toLongLong() != value && value > 0)
    unlisted_ = box->accessibleName() + ": " + QString::number(value) + " was set; it is the last entry.";
}

SamplerSettings PMethod::read(Refusal& refusal) {
  SamplerSettings settings;
  settings.method = kind_.method;
  for (const NumberSetting& setting : kind_.numbers) {
    auto* const field = gadget<QLineEdit>(setting.gadget);
    std::int64_t number = 0;
    const bool isRead = isWhole(field->text(), number);
    settings.*setting.number = isRead ? number : 0;
    if ((isRead && number > 0) || !refusal.text.isEmpty()) continue;
    const QString why = isRead ? "is not above 0." : "is no whole number; write its digits alone.";
    refusal = {(setting.refused != nullptr ? QString(setting.refused) : seedRefusal()) + '\n' +
                   field->accessibleName() + ": '" + field->text().trimmed() + "' " + why,
               field};
  }
  for (const ListSetting& list : kind_.lists)
    settings.*list.number = gadget<QComboBox>(list.gadget)->currentData().toLongLong();
  return settings;
}

std::unique_ptr<Sampler> PMethod::make(const SamplerSettings& settings, Refusal& refusal) {
  std::string message;
  std::unique_ptr<Sampler> sampler = makeSampler(settings, factors(), message);
  if (!sampler) refusal.text = QString::fromStdString(message);
  return sampler;
}

std::unique_ptr<Sampler> PMethod::draft(Refusal& refusal) {
  const SamplerSettings settings = read(refusal);
  showState(settings);
  return refusal.text.isEmpty() ? make(settings, refusal) : nullptr;
}

bool PMethod::isWhole(const QString& text, std::int64_t& number) {
  const std::string digits = text.trimmed().toStdString();
  const char* const end = digits.data() + digits.size();
  number = 0;
  const auto parsed = std::from_chars(digits.data(), end, number);
  return parsed.ec == std::errc() && parsed.ptr == end;
}

void PMethod::edited() {
  Refusal refusal;
  const std::unique_ptr<Sampler> sampler = draft(refusal);
  QStringList lines{refusal.text.trimmed()};
  QString cost;
  if (sampler) {
    const DesignFacts facts = designFacts(*sampler, factors());
    cost = QString::number(facts.runs) + (facts.runs == 1 ? " run" : " runs");
    if (facts.runs > 0 && facts.runs != sampler->numSamples)
      cost += " of " + QString::number(sampler->numSamples) + " asked for";
    cost += (facts.runs > 0 ? ": " + QString::fromStdString(facts.results) : QString()) + '.';
    lines = {unlisted_};
    for (const std::string& caution : facts.cautions) lines << QString::fromStdString(caution);
  }
  lines.removeAll(QString());
  gadget<QLabel>("MlCost")->setText(cost);
  gadget<QLabel>("MlMessage")->setText(lines.join('\n').section('\n', 0, kMostLines - 1));
  gadget<QLabel>("MlMessage")->setToolTip(lines.join('\n'));
  unlisted_.clear();
}

bool PMethod::isUnchanged(const Sampler& sampler) const {
  if (context_.current == nullptr || context_.current->numSamples != sampler.numSamples) return false;
  std::string message;
  const std::unique_ptr<Sampler> before = makeSampler(opened_, factors(), message);
  return before && textOf(*before) == textOf(sampler);
}

void PMethod::ok() {
  if (isDemo()) return end(false);
  Refusal refusal;
  const SamplerSettings settings = read(refusal);
  std::unique_ptr<Sampler> sampler = refusal.text.isEmpty() ? make(settings, refusal) : nullptr;
  std::string message;
  if (sampler && isUnchanged(*sampler)) sampler = context_.current->clone(message);
  if (!message.empty()) refusal.text = QString::fromStdString(message);
  if (!sampler) {
    tell("Error: wrong values", refusal.text);
    if (refusal.where != nullptr) refusal.where->setFocus();
    return;
  }
  sampler_ = std::move(sampler);
  end(true);
}

void PMethod::help() {
  if (helpOpen_) return;
  helpOpen_ = true;
  const std::unique_ptr<PHelp> hint = PHelp::hintOf(display(), kind_.file, window());
  hint->centre();
  static_cast<void>(hint->runModal());  // where its file is missing, that has been said
  helpOpen_ = false;
}

void PMethod::tell(const QString& title, const QString& text) {
  Dialogs::current().message(DialogKind::Error, title, text, window());
}

// Everything but what closes the panel or only shows.
void PMethod::setReadOnly() {
  for (auto* const field : window()->findChildren<QLineEdit*>()) field->setReadOnly(true);
  for (auto* const widget : window()->findChildren<QWidget*>())
    if (widget->property("changes").toBool()) allow(*widget, "A demonstration case keeps its configuration.");
}

}  // namespace tarvex
