#pragma once

class QString;

namespace tarvex {

class Panel;
class RunController;
class TableModel;

// Writes what a table shows, in its order, to a file that the user chooses: a row of headings, then of each row its
// name or number and its cells, each 20 characters wide and followed by a tab. What fails is said.
void saveSheet(TableModel& table, RunController& controller, Panel& panel);

}  // namespace tarvex
