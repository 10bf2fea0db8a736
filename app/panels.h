#pragma once

// Asks the toolkit which object of a visible panel the user worked, and carries out what it stands for: an
// input sets its parameter within the parameter's limits, a button does its work. Nothing is asked while no
// panel is visible.
void PollPanels();
