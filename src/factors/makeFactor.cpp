#include "factors/makeFactor.h"

#include <array>

#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Dummy.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Triangular.h"
#include "factors/Uniform.h"
#include "factors/Weibull.h"

namespace tarvex {
namespace {

template <class Kind>
std::unique_ptr<Factor> make() {
  return std::make_unique<Kind>();
}

struct Maker {
  const char* typeName;
  std::unique_ptr<Factor> (*make)();
};

// clang-format off
constexpr std::array kMakers{
    Maker{"Constant",    make<Constant>},
    Maker{"Normal",      make<Normal>},
    Maker{"Exponential", make<Exponential>},
    Maker{"Gamma",       make<Gamma>},
    Maker{"Beta",        make<Beta>},
    Maker{"Relation",    make<Relation>},
    Maker{"Weibull",     make<Weibull>},
    Maker{"LogNormal",   make<LogNormal>},
    Maker{"LogUniform",  make<LogUniform>},
    Maker{"Triangular",  make<Triangular>},
    Maker{"Uniform",     make<Uniform>},
    Maker{"Discrete",    make<Discrete>},
    Maker{"Dummy",       make<Dummy>},
    Maker{"Factor",      make<Factor>},
};
// clang-format on

}  // namespace

std::unique_ptr<Factor> makeFactor(const std::string& typeName) {
  for (const Maker& maker : kMakers) {
    if (typeName == maker.typeName) return maker.make();
  }
  return nullptr;
}

}  // namespace tarvex
