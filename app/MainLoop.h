#pragma once
// The parts of the loop that need no window: the network's notifications and
// the 100-millisecond tick. The client's loop and the headless tests share them.

// Delivers socket and name look-up notifications that are due, without waiting.
void PollNetwork();
// One tick of the timer, in its fixed order.
void RunTimerTick();
