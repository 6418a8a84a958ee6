#pragma once

#include <QString>

namespace tarvex {

// What the program can open.
enum class OpenedKind { Project, Sample, Results, Factors, Model, ExternalSample };

// By its suffix, and where that is no one's by its first line.
OpenedKind openedKind(const QString& path);

}  // namespace tarvex
