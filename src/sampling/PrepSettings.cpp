#include "sampling/PrepSettings.h"

#include <utility>

#include "base/TextWriter.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {

namespace {

constexpr int kEveryDigit = 17;  // tell any two doubles apart

bool writeText(const FactorList& factors, const Sampler* sampler, TextWriter& out, std::string& message) {
  out.setPrecision(kEveryDigit);
  factors.write(out);
  // A generation counts the factors; settings from a panel may not have come so far.
  const std::unique_ptr<Sampler> counted = sampler != nullptr ? sampler->clone(message) : nullptr;
  if (counted) {
    counted->setNumFactors(factors.factorCount());
    counted->write(out);
  }
  if (out.ok()) return counted || sampler == nullptr;
  message = out.problem();
  return false;
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

bool PrepSettings::compareWith(const PrepConfiguration& prep, bool& same, std::string& message) const {
  TextWriter mine;
  TextWriter others;
  const bool written =
      writeText(factors, sampler.get(), mine, message) && writeText(prep.factors, prep.sampler.get(), others, message);
  same = written && mine.text() == others.text();
  // Settings that no file would take are not those of a sample; of stores that can't be read nothing is known.
  PrepSettings copy;
  return written || (copy.copyFrom(*this, message) && copy.copyFrom(prep, message));
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
