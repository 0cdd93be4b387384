// Reader of table files in the toolkit's own format ("; Trelvane table").
#pragma once

// Loads the table into the next free font slot (two slots when it has
// alternative texts); returns the first font ID, or 0 on failure.
long ReadTableFile(const char* name);

// The name of the table file the last ReadTableFile could not open, or null
// when it opened it. The letter commands name that file before the error.
const char* UnopenedTableFile();
