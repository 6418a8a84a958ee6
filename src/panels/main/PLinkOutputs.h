#pragma once

#include "app/FrontEnd.h"
#include "panels/main/PLink.h"

namespace tarvex {

// Says which output of the project each name of an output file stands for, where the file's own names couldn't be
// kept. names() is the result once the panel was accepted.
class PLinkOutputs : public PLink {
 public:
  PLinkOutputs(const Display& display, const OutputLink& link, QWidget* parent);
};

}  // namespace tarvex
