#pragma once

#include <cstdint>
#include <memory>

class QWidget;

namespace tarvex {

class Display;
class FactorList;
class Sampler;

// Panels that others open by what they do.

// Lets the user correlate the factors of the list. True when `list` is the changed one.
bool correlateFactors(const Display& display, FactorList& list, bool demo, QWidget* parent);

// Lets the user set a method for the factors. True when `sampler` is the one accepted; it may hold the settings to
// begin with.
bool specifyMethod(const Display& display, std::int32_t methodId, const FactorList& factors,
                   std::unique_ptr<Sampler>& sampler, bool demo, QWidget* parent);

}  // namespace tarvex
