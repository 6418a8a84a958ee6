#include "factors/Constant.h"

#include "base/TextReader.h"

namespace tarvex {

std::unique_ptr<Factor> Constant::clone() const {
  return std::unique_ptr<Factor>(new Constant(*this));
}

void Constant::readParameters(TextReader& in) {
  in.expect("the value") >> value_;
}

}  // namespace tarvex
