#pragma once

// Asks the toolkit which object of a visible panel the user has operated, and handles it: an input sets its parameter
// within the parameter's limits, a button carries out its command. Does nothing while no panel is visible.
void PollPanels();
