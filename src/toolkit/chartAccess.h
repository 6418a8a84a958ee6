#pragma once

namespace tarvex {

class ChartView;

// What a chart is to those who don't see it: its name, and its content in words.

// Once for the process; later calls do nothing.
void installChartAccess();
// The chart shows something else.
void announceChart(ChartView& view);

}  // namespace tarvex
