#include "sampling/PrepSettings.h"

#include <utility>

#include "base/TextWriter.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {

namespace {

constexpr int kEveryDigit = 17;  // tell any two doubles apart

// Empty when a table can't be read.
std::string textOf(const FactorList& factors, const Sampler* sampler) {
  TextWriter out;
  out.setPrecision(kEveryDigit);
  factors.write(out);
  if (sampler == nullptr) return out.ok() ? out.text() : std::string();
  // A generation counts the factors; settings from a panel may not have come so far.
  std::string message;
  const std::unique_ptr<Sampler> counted = sampler->clone(message);
  if (!counted) return {};
  counted->setNumFactors(factors.factorCount());
  counted->write(out);
  return out.ok() ? out.text() : std::string();
}

}  // namespace

bool PrepSettings::copyFrom(const FactorList& otherFactors, const Sampler* otherSampler, std::string& message) {
  std::unique_ptr<Sampler> copy = otherSampler != nullptr ? otherSampler->clone(message) : nullptr;
  if ((otherSampler != nullptr && !copy) || !factors.copyFrom(otherFactors, message)) return false;
  sampler = std::move(copy);
  return true;
}

bool PrepSettings::copyFrom(const PrepSettings& other, std::string& message) {
  if (!copyFrom(other.factors, other.sampler.get(), message)) return false;
  sampleFile = other.sampleFile;
  order = other.order;
  return true;
}

bool PrepSettings::copyFrom(const PrepConfiguration& prep, std::string& message) {
  if (!copyFrom(prep.factors, prep.sampler.get(), message)) return false;
  sampleFile = prep.sampleFile;
  order = prep.samples.order();
  return true;
}

bool PrepSettings::describeSampleOf(const PrepConfiguration& prep) const {
  const std::string text = textOf(factors, sampler.get());
  return !text.empty() && text == textOf(prep.factors, prep.sampler.get());
}

PrepConfiguration makePrep(PrepSettings settings) {
  PrepConfiguration prep;
  prep.factors = std::move(settings.factors);
  prep.sampler = std::move(settings.sampler);
  prep.sampleFile = std::move(settings.sampleFile);
  // Its section has a line for each factor.
  if (auto* replicated = dynamic_cast<RepLatinSampler*>(prep.sampler.get())) replicated->synchronise(prep.factors);
  static_cast<void>(prep.samples.setOrder(settings.order));  // any other number leaves it by run
  return prep;
}

}  // namespace tarvex
