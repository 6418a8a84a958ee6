#pragma once

class QObject;
class QString;

namespace tarvex {

// Makes a gadget or an action sensitive while there is no reason against its use. The reason is told by tooltip, below
// the usual one, and by the accessible description.
void allow(QObject& gadget, const QString& reason);

}  // namespace tarvex
