#pragma once

#include <functional>

class QObject;

namespace tarvex {

// Calls `run` whenever the user uses the gadget in the way that its kind is for: presses a button, chooses an entry,
// edits a text (each change, or when it is finished, by the dynamic property "when": "finished"), selects a row (or, by
// "when": "pressed", presses one), changes the page. False for a kind that has no such use. The connection ends with
// `context`.
bool connectGadget(QObject* gadget, QObject* context, const std::function<void()>& run);

// The same for a double click, or Enter, on a row of a list, table or tree, and for Enter in a text field.
bool connectDoubleClick(QObject* gadget, QObject* context, const std::function<void()>& run);

// The same for the start, the course and the end of a drag from a tree.
bool connectDrag(QObject* gadget, QObject* context, const std::function<void()>& start,
                 const std::function<void()>& during, const std::function<void()>& end);

}  // namespace tarvex
