// The background curve in slot 2: what all routines that bring or scale one have in common.
#pragma once

// The interval of "Scale to interval" takes the ends of slot 2; for every new background.
void ResetBackgroundInterval();
// Slot 2 takes the two-theta of slot 1 and their number, and the interval their ends.
void PutBackgroundOnInputGrid();

// a / b for two sums; 1, which leaves a background as it is, where that is not a number.
float ScaleOfSums(float a, float b);
// Multiplies all of slot 2; what no real can hold becomes the largest that it can.
void MultiplyBackground(float factor);

// Tells the user of a cycle of a least-squares fit; false if the fit is to stop.
bool ReportFitCycle(int cycle, float rw);
