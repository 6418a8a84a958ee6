#include "sampling/PrepSettings.h"

#include <utility>

#include "base/TextWriter.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr int kEveryDigit = 17;  // tell any two doubles apart

std::string textOf(const FactorList& factors, const Sampler* sampler) {
  TextWriter out;
  out.setPrecision(kEveryDigit);
  factors.write(out);
  if (sampler != nullptr) sampler->write(out);
  return out.text();
}

}  // namespace

PrepSettings::PrepSettings(const PrepConfiguration& prep)
    : factors(prep.factors),
      sampler(prep.sampler ? prep.sampler->clone() : nullptr),
      sampleFile(prep.sampleFile),
      order(prep.samples.order()) {}

PrepSettings::PrepSettings(const PrepSettings& other)
    : factors(other.factors),
      sampler(other.sampler ? other.sampler->clone() : nullptr),
      sampleFile(other.sampleFile),
      order(other.order) {}

PrepSettings& PrepSettings::operator=(const PrepSettings& other) {
  if (this != &other) *this = PrepSettings(other);
  return *this;
}

bool PrepSettings::describeSampleOf(const PrepConfiguration& prep) const {
  return textOf(factors, sampler.get()) == textOf(prep.factors, prep.sampler.get());
}

PrepConfiguration makePrep(PrepSettings settings) {
  PrepConfiguration prep;
  prep.factors = std::move(settings.factors);
  prep.sampler = std::move(settings.sampler);
  prep.sampleFile = std::move(settings.sampleFile);
  prep.samples.setOrder(settings.order);
  return prep;
}

}  // namespace tarvex
