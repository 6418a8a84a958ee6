#include "toolkit/print.h"

#include <QByteArray>
#include <QString>
#include <cstdio>

namespace tarvex {

void print(const QString& text) {
  std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

}  // namespace tarvex
