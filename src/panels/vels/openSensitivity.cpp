#include "panels/vels/openSensitivity.h"

#include "panels/vels/ResultDesk.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

void openSensitivity(ResultDesk& desk) {
  Dialogs::current().message(
      DialogKind::Information, "Tarvex",
      "The sensitivity measures have no panel yet; tarvex-batch does the same work from a shell.", desk.parent());
}

}  // namespace tarvex
