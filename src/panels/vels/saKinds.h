#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "postproc/SavedTables.h"

namespace tarvex {

class PrepConfiguration;

// How a result panel can draw measures.
enum class SaForm { Bars, Interactions, Pies, Plane, Curves };
const char* formTitle(SaForm form);

// A chart or a sheet: its gadget, and the slots that it shows; without slots those of the form, or all.
struct SaView {
  const char* gadget;
  std::vector<std::int32_t> slots = {};
};

// A page with a file of its own.
struct SaPage {
  const char* file;
  const char* label;
};

// What the members of the family of result panels differ by: one row a kind of result.
struct SaKind {
  const char* file;
  const char* name;           // of the panel
  const char* title;          // the line above the pages; empty where the panel writes its own
  std::vector<SaForm> forms;  // the first is shown first
  std::vector<SaView> charts;
  std::vector<SaView> sheets;
  void (*write)(TextWriter& out, const SensitivityStats& stats, const TableSelection& selection, std::int32_t measure);
  std::vector<SaPage> pages = {};
};

// The row for a result; the design tells the classic test of FAST from the others.
const SaKind& saKindOf(const SensitivityStats& stats, const PrepConfiguration& prep);

}  // namespace tarvex
