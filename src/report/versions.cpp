#include "report/versions.h"

#include <fmt/format.h>

#include <boost/version.hpp>

#include "plots/drawFigure.h"

namespace tarvex {

std::string programVersion() {
  return TARVEX_VERSION;
}

std::vector<std::pair<std::string, std::string>> versionsInUse() {
  return {
      {"Tarvex", programVersion()},
      {"Boost.Math", fmt::format("{}.{}.{}", BOOST_VERSION / 100000, BOOST_VERSION / 100 % 1000, BOOST_VERSION % 100)},
      {"cairo", drawingVersion()},
      {"compiler", __VERSION__},
  };
}

}  // namespace tarvex
