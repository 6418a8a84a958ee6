#pragma once

#include <cstdint>
#include <memory>

#include "panels/sampling/PMethod.h"

namespace tarvex {

// The panel of a method, 0 to 7; null, after a message, when it can't be opened.
std::unique_ptr<PMethod> makeMethodPanel(const Display& display, std::int32_t method, const MethodContext& context,
                                         QWidget* parent);

}  // namespace tarvex
