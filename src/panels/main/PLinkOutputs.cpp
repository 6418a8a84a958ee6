#include "panels/main/PLinkOutputs.h"

namespace tarvex {

PLinkOutputs::PLinkOutputs(const Display& display, const OutputLink& link, QWidget* parent)
    : PLink(display,
            {"PLinkOutputs",
             "Link between output file and project outputs",
             {"In the output file", "Output of the project", "name"},
             "No output selected",
             "Outputs beside another name than their own: "},
            link.given, link.kept, link.names, parent) {}

}  // namespace tarvex
