// Reader of "thingy" character tables: lines such as 41=A, /FF, *FE, $1C=2.
#pragma once

// Loads the table into the next free font slot; returns its font ID, or 0
// after reporting the failure.
long ReadThingyTable(const char* name);
